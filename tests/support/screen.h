#pragma once

#include <QFile>
#include <QImage>
#include <QPoint>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QStringList>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

constexpr int TimeLimit = 20000; // milliseconds for anything to happen on the screen

/// Gives true as soon as a condition does, and false if it does not within the time limit.
template <typename Condition>
bool comesTrue(const Condition &condition)
{
    return QTest::qWaitFor(condition, TimeLimit);
}

/// Carries out commands of xdotool on the display of \p environment. The windows of this program
/// live on meanwhile.
inline bool
runXdotool(const QStringList &commands,
           const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
{
    QProcess tool;
    tool.setProcessEnvironment(environment);
    tool.start("xdotool", commands);
    return comesTrue([&tool] { return tool.state() == QProcess::NotRunning; }) &&
           tool.exitStatus() == QProcess::NormalExit && tool.exitCode() == 0;
}

/// The command of xdotool that moves the mouse to \p point of the screen.
inline QStringList mouseMove(const QPoint &point)
{
    return {"mousemove", QString::number(point.x()), QString::number(point.y())};
}

/**
 * An X server without hardware, and hands at its mouse.
 *
 * The server keeps its screen in a file in the form of xwd, which makes a picture of the screen a
 * matter of reading that file. It ends with this object.
 */
class Screen
{
public:
    ~Screen()
    {
        m_server.terminate();
        m_server.waitForFinished(TimeLimit);
    }

    /// Whether this machine has what a screen takes.
    static bool isAvailable()
    {
        return !QStandardPaths::findExecutable("Xvfb").isEmpty() &&
               !QStandardPaths::findExecutable("xdotool").isEmpty();
    }

    bool start()
    {
        // The server chooses a free display and tells its number when it is ready.
        m_server.start("Xvfb", {"-displayfd", "1", "-screen", "0", "1280x900x24", "-fbdir",
                                m_folder.path(), "-nolisten", "tcp"});
        m_server.closeWriteChannel();
        if (!comesTrue([&] { return m_server.canReadLine() || m_server.state() == 0; })) {
            return false;
        }
        m_display = ':' + QString::fromLatin1(m_server.readLine().trimmed());
        return m_display.size() > 1;
    }

    QProcessEnvironment environment() const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DISPLAY", m_display);
        environment.insert("QT_QPA_PLATFORM", "xcb");
        environment.insert("QT_FONT_DPI", "96"); // as in every program of QtTest
        environment.remove("WAYLAND_DISPLAY");
        return environment;
    }

    /// Carries out commands of xdotool.
    bool act(const QStringList &commands) const { return runXdotool(commands, environment()); }

    QImage picture() const
    {
        QFile file(m_folder.filePath("Xvfb_screen0"));
        if (!file.open(QIODevice::ReadOnly)) {
            return QImage();
        }
        const QByteArray dump = file.readAll();
        const auto field = [&dump](int index) {
            return int(qFromBigEndian<quint32>(dump.constData() + index * int(sizeof(quint32))));
        };
        enum { HeaderSize = 0, Width = 4, Height = 5, BytesPerLine = 12, ColorCount = 19 };
        constexpr int ColorSize = 12; // bytes of an entry of the color map
        const int offset = field(HeaderSize) + field(ColorCount) * ColorSize;
        const auto *pixels = reinterpret_cast<const uchar *>(dump.constData()) + offset;
        return QImage(pixels, field(Width), field(Height), field(BytesPerLine),
                      QImage::Format_RGB32)
            .copy();
    }

private:
    QTemporaryDir m_folder;
    QProcess m_server;
    QString m_display;
};
