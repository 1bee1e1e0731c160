#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace ViewerAPI {

/// Turns option names into ids and remembers the names, so that busy calls pass an id and reports
/// can still show a name. There is one for the whole process; plug-ins reach it through the suite
/// "OptionIdGeneratorHost". Not guarded. [ui-thread]
class VlOptionIdGeneratorHostStruct {
public:
    /// The process's generator, made at first use.
    static VlOptionIdGeneratorHostStruct& instance();

    VlOptionIdGeneratorHostStruct() = default;
    virtual ~VlOptionIdGeneratorHostStruct() = default;
    VlOptionIdGeneratorHostStruct(const VlOptionIdGeneratorHostStruct&) = delete;
    VlOptionIdGeneratorHostStruct& operator=(const VlOptionIdGeneratorHostStruct&) = delete;

    /// The id of a name: the first word of the content hash of a string attribute that holds it,
    /// shifted up by 16 bits, so that the low 16 bits are 0. The same in every process that uses
    /// the same attribute library, hence ids may be stored. On a collision the newest name is
    /// remembered, and nothing is reported. A null pointer counts as the empty name.
    std::uint64_t generate(const char* name);

    /// The name of an id, or "" for one that was never generated here; never null. It belongs to
    /// the table and is valid until another name takes the id.
    [[nodiscard]] const char* lookUp(std::uint64_t optionId) const;

    /// Id to name. It only grows.
    std::map<std::uint64_t, std::string> OptionIdTable;
};

} // namespace ViewerAPI
