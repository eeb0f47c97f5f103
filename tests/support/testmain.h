#pragma once

class QObject;

/// Runs the test functions of @p test in an application without a display, with an empty temporary
/// folder as the user's home, and fails on the warnings that stand for a broken connection or a
/// misused object.
int runWidgetTest(QObject *test, int argc, char *argv[]);

/// The main function of a test program; the test's .moc file follows it.
#define VELTRA4_TEST_MAIN(TestClass)                                                               \
    int main(int argc, char *argv[])                                                               \
    {                                                                                              \
        TestClass test;                                                                            \
        return runWidgetTest(&test, argc, argv);                                                   \
    }
