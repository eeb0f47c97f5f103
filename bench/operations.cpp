#include "bench/operations.h"

#include <QtGlobal>

#include <map>

namespace {

std::map<std::string, Operations::Maker> &makers()
{
    static std::map<std::string, Operations::Maker> makers;
    return makers;
}

} // namespace

bool Operations::add(const std::string &name, const Maker &maker)
{
    return makers().emplace(name, maker).second;
}

Operations::Operation Operations::make(const std::string &name, int size)
{
    const auto maker = makers().find(name);
    if (maker == makers().end()) {
        qFatal("there is no operation %s", name.c_str());
    }
    return maker->second(size);
}

void Operations::require(bool isSuccess)
{
    if (!isSuccess) {
        qFatal("the outcome is not as expected");
    }
}
