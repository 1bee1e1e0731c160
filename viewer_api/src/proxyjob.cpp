#include "proxyjob.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"

namespace ViewerAPI {

using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;

namespace {

constexpr const char* kTimeName = "timeSlice.currentTime";
constexpr float kFirstTime = 1.0F;

FloatAttribute chooseTime(const GroupAttribute& proxyAttrs, const GroupAttribute& systemArgs) {
    const auto frame = [&proxyAttrs](const char* name) {
        return FloatAttribute(proxyAttrs.borrowChildByName(name));
    };
    if (IntAttribute(proxyAttrs.borrowChildByName("static")).getValue(0) == 1) {
        return FloatAttribute(kFirstTime);
    }
    if (FloatAttribute currentFrame = frame("currentFrame"); currentFrame.isValid()) {
        return currentFrame;
    }
    const FloatAttribute current(systemArgs.borrowChildByName(kTimeName));
    FloatAttribute time(current.getValue(kFirstTime));
    const FloatAttribute first = frame("firstFrame");
    if (first.isValid() && time.getValue() < first.getValue()) {
        time = first;
    }
    const FloatAttribute last = frame("lastFrame");
    if (last.isValid() && time.getValue() > last.getValue()) {
        time = last;
    }
    return time;
}

} // namespace

ProxyJob makeProxyJob(const GroupAttribute& proxyAttrs, const GroupAttribute& systemArgs) {
    ProxyJob job;
    job.proxyAttrs = proxyAttrs;
    job.systemArgs = GroupBuilder()
                         .update(systemArgs)
                         .set(kTimeName, chooseTime(proxyAttrs, systemArgs))
                         .build();
    // What only chooses the time has had its say in the system args.
    const GroupAttribute loaded = GroupBuilder()
                                      .update(proxyAttrs)
                                      .del("static")
                                      .del("currentFrame")
                                      .del("firstFrame")
                                      .del("lastFrame")
                                      .build();
    job.key = GroupBuilder()
                  .set("p", loaded, false)
                  .set("s", job.systemArgs, false)
                  .build()
                  .getHash()
                  .first;
    return job;
}

} // namespace ViewerAPI
