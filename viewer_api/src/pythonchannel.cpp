#include "pythonchannel.h"

#include <utility>

namespace ViewerAPI {
namespace {

ChannelDispatch& channelDispatch() {
    static ChannelDispatch dispatch;
    return dispatch;
}

} // namespace

void setChannelDispatch(ChannelDispatch dispatch) {
    channelDispatch() = std::move(dispatch);
}

VlAttribute::Attribute dispatchChannel(void* hostedPythonObject, const char* channel,
                                       const VlAttribute::Attribute& value) {
    const ChannelDispatch& dispatch = channelDispatch();
    return dispatch ? dispatch(hostedPythonObject, channel, value) : VlAttribute::Attribute();
}

} // namespace ViewerAPI
