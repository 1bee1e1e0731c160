#include "ops/import/modelcache.h"

#include "VlLogging/VlLoggerGlue.h"
#include "ops/import/importprocess.h"

#include <sys/stat.h>

#include <map>
#include <mutex>
#include <utility>

namespace VlScenelibEngine {

namespace {

// What tells a file from an earlier state of it.
struct FileStamp {
    dev_t device = 0;
    ino_t number = 0;
    off_t size = 0;
    time_t seconds = 0;
    long nanoseconds = 0;

    static FileStamp of(const std::string& path) {
        struct stat status {};
        if (stat(path.c_str(), &status) != 0) {
            return {};
        }
        return {status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec,
                status.st_mtim.tv_nsec};
    }
    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

struct Entry {
    std::mutex mutex; // held while the file is read
    FileStamp stamp;
    std::weak_ptr<const Model> model;
};

std::shared_ptr<Entry> entryOf(const std::string& path) {
    static auto* const mutex = new std::mutex;
    static auto* const entries = new std::map<std::string, std::shared_ptr<Entry>>;
    const std::lock_guard lock(*mutex);
    // What nobody has or waits for goes; one use is the map's own.
    std::erase_if(*entries, [](const auto& item) {
        return item.second.use_count() == 1 && item.second->model.expired();
    });
    auto& entry = (*entries)[path];
    if (!entry) {
        entry = std::make_shared<Entry>();
    }
    return entry;
}

void logWarnings(const std::string& path, const ModelData& data) {
    static const auto* const logger = new VlLoggerGlue("VlScenelibEngine");
    if (logger->warningEnabled()) {
        for (const std::string& warning : data.warnings) {
            logger->warning("'" + path + "': " + warning + ".",
                            "ostrel/scenelib_engine/src/ops/import/modelcache", __LINE__);
        }
    }
}

} // namespace

std::shared_ptr<const Model> loadModel(const std::string& path) {
    const std::shared_ptr<Entry> entry = entryOf(path);
    const std::lock_guard lock(entry->mutex);
    const FileStamp stamp = FileStamp::of(path);
    auto model = entry->model.lock();
    if (!model || entry->stamp != stamp) {
        ModelData data = importModel(path);
        logWarnings(path, data);
        model = std::make_shared<const Model>(std::move(data));
        entry->model = model;
        entry->stamp = stamp;
    }
    return model;
}

} // namespace VlScenelibEngine
