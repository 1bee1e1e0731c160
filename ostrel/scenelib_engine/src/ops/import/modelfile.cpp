#include "ops/import/modelfile.h"

#include "VlLogging/VlLoggerGlue.h"
#include "ops/import/modelreader.h"

#include <sys/stat.h>

#include <map>
#include <mutex>
#include <stdexcept>
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
    FileStamp stamp;
    std::weak_ptr<ModelFile> file;
};

void logWarnings(const std::string& path, const ModelData& data) {
    static const auto* const logger = new VlLoggerGlue("VlScenelibEngine");
    if (logger->warningEnabled()) {
        for (const std::string& warning : data.warnings) {
            logger->warning("'" + path + "': " + warning + ".",
                            "ostrel/scenelib_engine/src/ops/import/modelfile", __LINE__);
        }
    }
}

} // namespace

std::shared_ptr<ModelFile> ModelFile::request(const std::string& path) {
    static auto* const mutex = new std::mutex;
    static auto* const entries = new std::map<std::string, Entry>;
    const FileStamp stamp = FileStamp::of(path);
    const std::lock_guard lock(*mutex);
    std::erase_if(*entries, [](const auto& item) { return item.second.file.expired(); });
    Entry& entry = (*entries)[path];
    std::shared_ptr<ModelFile> file = entry.file.lock();
    if (!file || entry.stamp != stamp) {
        file = std::make_shared<ModelFile>(path);
        entry = {stamp, file};
        ModelReader::get().run(
            [path, process = file->process, reader = std::weak_ptr(file)] {
                std::unique_ptr<const Model> model;
                std::string failure;
                try {
                    ModelData data = process->read();
                    logWarnings(path, data);
                    model = std::make_unique<const Model>(std::move(data));
                } catch (const std::exception& error) {
                    failure = error.what();
                }
                if (const auto wanted = reader.lock()) {
                    wanted->finish(std::move(model), std::move(failure));
                }
            },
            file->process);
    }
    return file;
}

ModelFile::ModelFile(const std::string& path) : process(std::make_shared<ImportProcess>(path)) {}

ModelFile::~ModelFile() {
    process->cancel();
}

const Model& ModelFile::getModel() const {
    if (!model) {
        throw std::runtime_error(failure);
    }
    return *model;
}

void ModelFile::finish(std::unique_ptr<const Model> readModel, std::string whyNot) {
    model = std::move(readModel);
    failure = std::move(whyNot);
    setThere();
}

} // namespace VlScenelibEngine
