// A variable of the environment for the length of a scope.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace tidewright::test {

/// Sets the variable, or removes it, and puts back at the end what was there before.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const std::optional<std::string>& value) : m_name(name) {
        if (const char* const old = std::getenv(name))
            m_old = old;
        set(value);
    }
    ~ScopedVariable() { set(m_old); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    void set(const std::optional<std::string>& value) const {
        if (value)
            setenv(m_name, value->c_str(), 1);
        else
            unsetenv(m_name);
    }

    const char* m_name;
    std::optional<std::string> m_old;
};

} // namespace tidewright::test
