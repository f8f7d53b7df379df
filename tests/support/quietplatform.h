#pragma once

#include <QString>
#include <QtGlobal>

/**
 * Keeps the offscreen platform, while it lives, from warning of what it cannot do: it gives no size
 * hints to a window manager, which shows with every window of a limited size, and neither raises a
 * menu nor grabs the keyboard for it. That says nothing about the code under test. Every other
 * message goes its way. Several may live at once.
 */
class QuietPlatform
{
public:
    QuietPlatform()
    {
        if (s_count++ == 0) {
            s_previous = qInstallMessageHandler(passOn);
        }
    }
    ~QuietPlatform()
    {
        if (--s_count == 0) {
            qInstallMessageHandler(s_previous);
        }
    }
    Q_DISABLE_COPY_MOVE(QuietPlatform)

private:
    static void passOn(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (!message.startsWith(QLatin1String("This plugin does not support "))) {
            s_previous(type, context, message);
        }
    }

    static inline QtMessageHandler s_previous = nullptr; ///< Before the first of them.
    static inline int s_count = 0;
};
