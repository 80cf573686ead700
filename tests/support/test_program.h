#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QTest>

/// The test classes of a room share one program; its first argument names the class to run, further
/// ones go to Qt Test. CTest runs each class in a process of its own.
///
/// A class registers itself at the end of its source, under its name in CMakeLists.txt:
///
///     PE_TEST("structure_rules", StructureRulesTest)
///
/// Its static initMain(), if it has one, is called before there is an application.
namespace test_program {

enum class Needs {
    Core,   ///< a QCoreApplication
    Widgets ///< a QApplication; only in programs that link Qt Widgets
};

/// Registers a class: @p initMain is called before the application is made, @p make after it.
bool add(const char* name, Needs needs, void (*initMain)(), QObject* (*make)());

/// Registers a part that a test plays in a process of its own, started with this name as the
/// program's first argument. Its result is the exit status.
bool addPart(const char* name, int (*play)(QCoreApplication& application));

} // namespace test_program

#define PE_ADD_TEST(name, needs, Class)                                                            \
    static const bool is##Class##Added =                                                           \
        test_program::add(name, test_program::Needs::needs, QTest::Internal::callInitMain<Class>,  \
                          []() -> QObject* { return new Class; });
#define PE_TEST(name, Class) PE_ADD_TEST(name, Core, Class)
#define PE_WIDGET_TEST(name, Class) PE_ADD_TEST(name, Widgets, Class)
