#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

/// How a program ended, and what it said.
struct Outcome
{
    int exitCode = -1;    ///< -1 if the program did not end by itself.
    bool crashed = false; ///< A signal has ended it, but not for the time that it took.
    QString output;
    QString errors;
};

constexpr int ProgramTimeLimit = 60000; // milliseconds, of which a program needs few

/// Waits for the end of a started program, but not for ever.
inline Outcome outcomeOf(QProcess &process)
{
    Outcome outcome;
    if (process.waitForFinished(ProgramTimeLimit)) {
        outcome.crashed = process.exitStatus() == QProcess::CrashExit;
        outcome.exitCode = outcome.crashed ? -1 : process.exitCode();
    }
    outcome.output = QString::fromLocal8Bit(process.readAllStandardOutput());
    outcome.errors = QString::fromLocal8Bit(process.readAllStandardError());
    return outcome;
}

/// Runs \p program to its end.
inline Outcome
runProgram(const QString &program, const QStringList &arguments,
           const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    return outcomeOf(process);
}

/// An environment as over a plain remote shell.
inline QProcessEnvironment withoutDisplay()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("DISPLAY");
    environment.remove("WAYLAND_DISPLAY");
    environment.remove("QT_QPA_PLATFORM");
    return environment;
}
