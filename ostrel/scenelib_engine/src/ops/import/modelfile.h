#pragma once

#include "VlScenelibEngine/Awaited.h"
#include "ops/import/importprocess.h"
#include "ops/import/model.h"

#include <memory>
#include <string>

namespace VlScenelibEngine {

/// The model of a file, for which cooks wait while it is read. [any-thread]
class ModelFile final : public Awaited {
public:
    /// The file at a path: one for all who ask at the same time, and another once the file has
    /// changed. It is there as long as anyone has it. Reading it begins, on a thread of its own.
    [[nodiscard]] static std::shared_ptr<ModelFile> request(const std::string& path);

    explicit ModelFile(const std::string& path);
    /// Gives up reading it.
    ~ModelFile() override;

    /// Once it is there. Throws std::runtime_error, as ImportProcess::read() does.
    [[nodiscard]] const Model& getModel() const;

private:
    void finish(std::unique_ptr<const Model> readModel, std::string whyNot);

    std::shared_ptr<ImportProcess> process;
    std::unique_ptr<const Model> model;
    std::string failure;
};

} // namespace VlScenelibEngine
