#include "probe.h"

#include "support/attributetext.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"
#include "viewer_api/plugin/HostSuites.h"

#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>

namespace probe {

using namespace VlAttribute;

namespace {

struct Rule {
    std::string action;
    std::string text; ///< what stands after the action's ":"
    std::string plugin;
    std::string entry;
    int left = -1; ///< calls that it still holds for; -1 for all
};

/// What all instances share. Lives as long as the library.
struct Library {
    std::vector<std::string> log;
    std::vector<Rule> rules;
    std::set<Probe*> alive;
};

Library& library() {
    static Library instance;
    return instance;
}

std::string optionName(std::uint64_t id) {
    const auto& suite = ViewerPlugin::requireHostSuite<OptionIdGeneratorHostSuite>();
    const std::string name = suite.lookUpOptionId(suite.getOptionIdGenerator(), id);
    return name.empty() ? std::to_string(id) : name;
}

/// `probe` may have come to its end meanwhile, or not exist yet.
void record(Probe* probe, Kind kind, const std::string& line) {
    library().log.push_back(std::string(nameOf(kind)) + " " + line);
    if (library().alive.count(probe) != 0) {
        probe->log.push_back(line);
    }
}

void callAndRecord(Probe* probe, const std::string& call) {
    const Kind kind = probe->kind;
    const std::string result = callHost(*probe, call);
    record(probe, kind, "-> " + call.substr(0, call.find(' ')) + ": " + result);
}

void follow(const Rule& rule, Probe* probe, Answer& answer) {
    if (rule.action == "throwStd") {
        throw std::runtime_error(rule.text);
    }
    if (rule.action == "throwOther") {
        throw 42; // something that is no std::exception
    }
    if (rule.action == "returnNull") {
        answer.isNull = true;
    } else if (rule.action == "return") {
        answer.number = std::stoi(rule.text);
    } else if (rule.action == "returnAttribute") {
        answer.attribute = parseAttribute(rule.text);
    } else if (rule.action == "call" && probe) {
        callAndRecord(probe, rule.text);
    } else {
        throw std::runtime_error("Probe: unknown action '" + rule.action + "'");
    }
}

Answer followRules(Kind kind, Probe* probe, std::string_view entry) {
    std::vector<Rule> matching; // rules may come and go while they are followed
    for (Rule& rule : library().rules) {
        if (rule.entry == entry && rule.left != 0 &&
            (rule.plugin.empty() || rule.plugin == nameOf(kind))) {
            rule.left -= rule.left > 0 ? 1 : 0;
            matching.push_back(rule);
        }
    }
    Answer answer;
    for (const Rule& rule : matching) {
        follow(rule, probe, answer);
    }
    return answer;
}

Rule parseRule(const std::string& command) {
    Rule rule;
    const std::size_t at = command.rfind('@');
    const std::string action = command.substr(0, at);
    const std::size_t colon = action.find(':');
    rule.action = action.substr(0, colon);
    rule.text = colon == std::string::npos ? "" : action.substr(colon + 1);
    if (at == std::string::npos) {
        return rule;
    }
    std::string where = command.substr(at + 1);
    if (const std::size_t hash = where.find('#'); hash != std::string::npos) {
        rule.left = std::stoi(where.substr(hash + 1));
        where.resize(hash);
    }
    if (const std::size_t dot = where.find('.'); dot != std::string::npos) {
        rule.plugin = where.substr(0, dot);
        where.erase(0, dot + 1);
    }
    rule.entry = where;
    return rule;
}

void obey(Probe* probe, const std::string& command) {
    const Rule rule = parseRule(command);
    if (rule.action == "clear") {
        library().rules.clear();
    } else if (rule.entry.empty()) {
        Answer ignored;
        follow(rule, probe, ignored);
    } else {
        library().rules.push_back(rule);
    }
}

std::string lineOf(std::string_view entry, const std::string& arguments) {
    return std::string(entry) + (arguments.empty() ? "" : " " + arguments);
}

GroupAttribute parseGroup(std::istringstream& in) {
    GroupBuilder group;
    for (std::string child; std::getline(in, child, ';');) {
        const std::size_t equals = child.find('=');
        group.set(child.substr(0, equals), parseAttribute(child.substr(equals + 1)));
    }
    return group.build();
}

template <class Attribute_, class Value>
Attribute_ parseNumbers(std::istringstream& in) {
    std::vector<Value> values;
    for (Value value; in >> value;) {
        values.push_back(value);
    }
    return Attribute_(std::span<const Value>(values));
}

void end(Probe* probe) {
    library().alive.erase(probe);
    delete probe;
}

} // namespace

const char* nameOf(Kind kind) {
    static const char* const kNames[] = {"ProbeDelegate", "ProbeComponent", "ProbeViewport",
                                         "ProbeLayer",    "ProbeCamera",    "ProbeManipulator",
                                         "ProbeHandle"};
    return kNames[static_cast<int>(kind)];
}

void* create(Kind kind, void* host) {
    // It may call the host from here, and be told to fail.
    std::unique_ptr<Probe, decltype(&end)> probe(new Probe{kind, host, {}, {}}, end);
    library().alive.insert(probe.get());
    return called(probe.get(), "create").isNull ? nullptr : probe.release();
}

void destroy(void* instance) {
    auto* probe = static_cast<Probe*>(instance);
    called(probe, "destroy");
    end(probe);
}

Answer calledOnKind(Kind kind, std::string_view entry, const std::string& arguments) {
    record(nullptr, kind, lineOf(entry, arguments));
    return followRules(kind, nullptr, entry);
}

Answer called(void* instance, std::string_view entry, const std::string& arguments) {
    auto* probe = static_cast<Probe*>(instance);
    record(probe, probe->kind, lineOf(entry, arguments));
    return followRules(probe->kind, probe, entry);
}

int answered(void* instance, std::string_view entry, const std::string& arguments, int otherwise) {
    return called(instance, entry, arguments).number.value_or(otherwise);
}

VlAttributeStruct* answered(void* instance, std::string_view entry, const std::string& arguments) {
    return called(instance, entry, arguments).attribute.detach();
}

void setOption(void* instance, std::uint64_t id, VlAttributeStruct* stolen) {
    auto* probe = static_cast<Probe*>(instance);
    const Attribute value = Attribute::CreateAndSteal(stolen);
    const std::string name = optionName(id);
    if (name == "clearLog") {
        library().log.clear();
        for (Probe* each : library().alive) {
            each->log.clear();
        }
    } else if (name == "command") {
        const StringAttribute commands(value);
        for (const auto& command : commands.getNearestSample(0.0F)) {
            obey(probe, std::string(command));
        }
    } else {
        probe->options[id] = value;
        called(probe, "setOption", name + " " + ViewerAPI::test::textOf(value));
    }
}

VlAttributeStruct* getOption(void* instance, std::uint64_t id) {
    auto* probe = static_cast<Probe*>(instance);
    const std::string name = optionName(id);
    if (name == "log" || name == "libraryLog") {
        return StringAttribute(name == "log" ? probe->log : library().log).detach();
    }
    const Answer answer = called(probe, "getOption", name);
    if (answer.isNull || answer.attribute.isValid()) {
        return answer.attribute.getRetainedHandle();
    }
    const auto found = probe->options.find(id);
    return found == probe->options.end() ? nullptr : found->second.getRetainedHandle();
}

Attribute parseAttribute(const std::string& text) {
    const std::size_t colon = text.find(':');
    const std::string kind = text.substr(0, colon);
    const std::string rest = colon == std::string::npos ? "" : text.substr(colon + 1);
    std::istringstream in(rest);
    if (kind == "null") {
        return Attribute();
    }
    if (kind == "int") {
        return parseNumbers<IntAttribute, std::int32_t>(in);
    }
    if (kind == "float") {
        return parseNumbers<FloatAttribute, float>(in);
    }
    if (kind == "double") {
        return parseNumbers<DoubleAttribute, double>(in);
    }
    if (kind == "string") {
        return StringAttribute(rest);
    }
    if (kind == "group") {
        return parseGroup(in);
    }
    throw std::runtime_error("Probe: '" + text + "' is no attribute");
}

} // namespace probe
