#pragma once

#include <string>

/// A loaded module of an applet.
class Module
{
public:
    /// All its symbols are resolved at once; on failure error() tells why.
    bool load(const char* path);
    /// A function or an object of the module, or null.
    void* symbol(const char* name) const;
    /// Runs the module's own destructors.
    void unload();
    const std::string& error() const { return m_error; }

private:
    void* m_handle = nullptr;
    std::string m_error;
};
