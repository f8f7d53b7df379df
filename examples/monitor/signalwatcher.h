#pragma once

#include <QObject>

/**
 * Turns SIGINT (Ctrl-C) and SIGTERM into a signal of Qt, so that a program can end cleanly. A
 * second one of the same kind ends the program at once, as it does without this.
 *
 * One object at a time, made after the application object.
 */
class SignalWatcher : public QObject
{
    Q_OBJECT

public:
    explicit SignalWatcher(QObject *parent = nullptr);
    ~SignalWatcher() override;

signals:
    void interrupted();

private slots:
    void slotReadable();
};
