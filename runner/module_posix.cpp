#include "runner/module.h"

#include <dlfcn.h>

bool Module::load(const char* path)
{
    m_handle = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (!m_handle)
        m_error = dlerror();
    return m_handle != nullptr;
}

void* Module::symbol(const char* name) const
{
    return dlsym(m_handle, name);
}

void Module::unload()
{
    dlclose(m_handle);
    m_handle = nullptr;
}
