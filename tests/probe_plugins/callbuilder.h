#pragma once

#include "hostcalls.h"

#include "probe.h"

#include <cstdint>
#include <string>

namespace probe {

/// Makes the calls of entries whose arguments and results are of the common kinds. The words of a
/// call are the entry's arguments in order; an attribute, which comes last, takes all that is left.
struct CallBuilder {
    HostCalls calls;

    void action(const char* name, void (*entry)(void*)) {
        calls[name] = [entry](void* host, Arguments&) {
            entry(host);
            return std::string("done");
        };
    }
    void action(const char* name, void (*entry)(void*, const char*)) {
        calls[name] = [entry](void* host, Arguments& a) {
            entry(host, a.text(0));
            return std::string("done");
        };
    }
    void action(const char* name, void (*entry)(void*, int)) {
        calls[name] = [entry](void* host, Arguments& a) {
            entry(host, a.number(0));
            return std::string("done");
        };
    }
    void action(const char* name, void (*entry)(void*, std::uint32_t)) {
        calls[name] = [entry](void* host, Arguments& a) {
            entry(host, static_cast<std::uint32_t>(a.number(0)));
            return std::string("done");
        };
    }
    void action(const char* name, void (*entry)(void*, double)) {
        calls[name] = [entry](void* host, Arguments& a) {
            entry(host, a.real(0));
            return std::string("done");
        };
    }
    void action(const char* name, void (*entry)(void*, std::uint64_t)) {
        calls[name] = [entry](void* host, Arguments& a) {
            entry(host, a.id(0));
            return std::string("done");
        };
    }
    void action(const char* name, void (*entry)(void*, VlAttributeStruct*)) {
        calls[name] = [entry](void* host, Arguments& a) {
            entry(host, parseAttribute(a.rest(0)).getHandle());
            return std::string("done");
        };
    }
    template <class Result>
    void query(const char* name, Result (*entry)(void*)) {
        calls[name] = [entry](void* host, Arguments&) { return text(entry(host)); };
    }
    void query(const char* name, int (*entry)(void*, const char*)) {
        calls[name] = [entry](void* host, Arguments& a) { return text(entry(host, a.text(0))); };
    }
    void query(const char* name, int (*entry)(void*, int)) {
        calls[name] = [entry](void* host, Arguments& a) { return text(entry(host, a.number(0))); };
    }
    void query(const char* name, int (*entry)(void*, std::uint64_t)) {
        calls[name] = [entry](void* host, Arguments& a) { return text(entry(host, a.id(0))); };
    }
    void query(const char* name, int (*entry)(void*, VlAttributeStruct*)) {
        calls[name] = [entry](void* host, Arguments& a) {
            return text(entry(host, parseAttribute(a.rest(0)).getHandle()));
        };
    }
    void query(const char* name, const char* (*entry)(void*, std::uint32_t)) {
        calls[name] = [entry](void* host, Arguments& a) {
            return text(entry(host, static_cast<std::uint32_t>(a.number(0))));
        };
    }
    void object(const char* name, void (*entry)(void*, void**, void**, const void**)) {
        calls[name] = [entry](void* host, Arguments&) {
            FoundObject found;
            entry(host, &found.host, &found.instance, &found.suite);
            return found.text();
        };
    }
    void object(const char* name, void (*entry)(void*, const char*, void**, void**, const void**)) {
        calls[name] = [entry](void* host, Arguments& a) {
            FoundObject found;
            entry(host, a.text(0), &found.host, &found.instance, &found.suite);
            return found.text();
        };
    }
    void object(const char* name,
                void (*entry)(void*, std::uint32_t, void**, void**, const void**)) {
        calls[name] = [entry](void* host, Arguments& a) {
            FoundObject found;
            entry(host, static_cast<std::uint32_t>(a.number(0)), &found.host, &found.instance,
                  &found.suite);
            return found.text();
        };
    }
    void object(const char* name,
                void (*entry)(void*, const char*, const char*, void**, void**, const void**)) {
        calls[name] = [entry](void* host, Arguments& a) {
            FoundObject found;
            entry(host, a.text(0), a.text(1), &found.host, &found.instance, &found.suite);
            return found.text();
        };
    }

    static std::string text(const char* value) { return textOfResult(value); }
    static std::string text(VlAttributeStruct* stolen) { return textOfResult(stolen); }
    static std::string text(const double* matrix) { return textOfMatrix(matrix); }
    template <class Number>
    static std::string text(Number value) {
        return std::to_string(value);
    }
};

} // namespace probe
