#pragma once

// Documentation of the option methods, which all types share.

namespace ViewerAPI::docs {

inline constexpr char setOption[] =
    "setOption(long optionId, Attribute value)\n\n"
    "Sets an option of the plugin. The id is what ViewerAPI.GenerateOptionId() gives for the "
    "option's name; what options there are is the plugin's affair.";

inline constexpr char setOptionByName[] =
    "setOptionByName(str name, Attribute value)\n\n"
    "This is the equivalent of calling setOption(ViewerAPI.GenerateOptionId(name), value) causing "
    "the option hash to be re-generated with every call. For frequently used options it is "
    "recommended to cache the option hash.";

inline constexpr char getOption[] =
    "getOption(long optionId) -> Attribute\n\n"
    "Gets the value of an option of the plugin. Returns None if the plugin has no such option.";

inline constexpr char getOptionByName[] =
    "getOptionByName(str name) -> Attribute\n\n"
    "This is the equivalent of calling getOption(ViewerAPI.GenerateOptionId(name)) causing the "
    "option hash to be re-generated with every call. For frequently used options it is recommended "
    "to cache the option hash.";

/// Of the types whose documentation has always named the other method.
inline constexpr char getOptionByNameAsGetOption[] =
    "getOption(str name) -> Attribute\n\n"
    "This is the equivalent of calling getOption(ViewerAPI.GenerateOptionId(name)) causing the "
    "option hash to be re-generated with every call. For frequently used options it is recommended "
    "to cache the option hash.";

} // namespace ViewerAPI::docs
