#include "tests/support/test_program.h"

#include <QTest>

#ifdef QT_WIDGETS_LIB
#include <QApplication>
using WidgetApplication = QApplication;
#else
using WidgetApplication = QCoreApplication;
#endif

#include <cstdio>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace test_program {
namespace {

struct Entry
{
    Needs needs = Needs::Core;
    void (*initMain)() = nullptr;
    QObject* (*make)() = nullptr;
    int (*play)(QCoreApplication&) = nullptr; ///< of a part; null for a test class
};

std::map<std::string, Entry>& entries()
{
    static std::map<std::string, Entry> all;
    return all;
}

bool addEntry(const char* name, const Entry& entry)
{
    if (!entries().emplace(name, entry).second)
        qFatal("Two tests are named %s", name);
    return true;
}

/// A class that is registered here but not listed for CTest would never run.
bool areAllListed()
{
    std::istringstream list(PE_TESTS);
    const std::set<std::string> listed{std::istream_iterator<std::string>(list), {}};
    bool all = true;
    for (const auto& [name, entry] : entries()) {
        if (entry.play || listed.count(name) == 1)
            continue;
        std::fprintf(stderr, "%s is not listed in CMakeLists.txt\n", name.c_str());
        all = false;
    }
    return all;
}

std::unique_ptr<QCoreApplication> makeApplication(Needs needs, int& argc, char** argv)
{
    if (needs == Needs::Widgets)
        return std::make_unique<WidgetApplication>(argc, argv);
    return std::make_unique<QCoreApplication>(argc, argv);
}

} // namespace

bool add(const char* name, Needs needs, void (*initMain)(), QObject* (*make)())
{
    return addEntry(name, {needs, initMain, make, nullptr});
}

bool addPart(const char* name, int (*play)(QCoreApplication& application))
{
    return addEntry(name, {Needs::Core, [] {}, nullptr, play});
}

} // namespace test_program

int main(int argc, char** argv)
{
    using namespace test_program;
    const auto found = argc > 1 ? entries().find(argv[1]) : entries().end();
    if (found == entries().end() || !areAllListed()) {
        std::fprintf(stderr, "Usage: %s TEST [ARGUMENT...], where TEST is one of:\n", argv[0]);
        for (const auto& [name, entry] : entries()) {
            if (!entry.play)
                std::fprintf(stderr, "  %s\n", name.c_str());
        }
        return 2;
    }
    const Entry& entry = found->second;
    std::vector<char*> arguments{argv[0]};
    arguments.insert(arguments.end(), argv + 2, argv + argc);
    int count = int(arguments.size());
    arguments.push_back(nullptr);
    entry.initMain();
    const auto application = makeApplication(entry.needs, count, arguments.data());
    if (entry.play)
        return entry.play(*application);
    // Fonts have the same sizes on every screen.
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi, true);
    const std::unique_ptr<QObject> test(entry.make());
    return QTest::qExec(test.get(), count, arguments.data());
}
