#include "monitor.h"
#include "signalwatcher.h"

#include "common/commandline.h"
#include "common/translations.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QLocale>

#include <optional>

namespace {

class CommandLine
{
    Q_DECLARE_TR_FUNCTIONS(CommandLine)

public:
    CommandLine();

    /// Reads the program's arguments; ends the program for --help, --version and unknown options.
    /// Returns nothing if they make no sense, and \p problem says why.
    std::optional<MonitorOptions> parse(QString *problem);

private:
    std::optional<int> number(const QCommandLineOption &option, int least, int most,
                              QString *problem) const;
    bool parseTimes(MonitorOptions &options, QString *problem) const;
    bool parseFiles(MonitorOptions &options, QString *problem) const;

    const QCommandLineOption m_interval;
    const QCommandLineOption m_window;
    const QCommandLineOption m_keep;
    const QCommandLineOption m_separate;
    const QCommandLineOption m_seconds;
    const QCommandLineOption m_screenshot;
    const QCommandLineOption m_size;
    const QCommandLineOption m_record;
    const QCommandLineOption m_proc;
    QCommandLineParser m_parser;
};

CommandLine::CommandLine()
    : m_interval("interval", tr("Time from sample to sample in milliseconds (250)."), tr("MS"),
                 "250")
    , m_window("window", tr("Width of the view in seconds (60, or as last time)."), tr("SECONDS"),
               "60")
    , m_keep("keep", tr("Age at which samples go, in seconds (600)."), tr("SECONDS"), "600")
    , m_separate("separate", tr("Show each curve in a pane of its own."))
    , m_seconds("seconds", tr("End after so many seconds."), tr("N"))
    , m_screenshot("screenshot", tr("Write a picture of the window as PNG at that end."),
                   tr("FILE.png"))
    , m_size("size", tr("Size of the window in pixels (1200x1000, or as last time)."), tr("WxH"),
             "1200x1000")
    , m_record("record", tr("Write all samples to a table, which csvviewer shows."), tr("FILE.csv"))
    , m_proc("proc", tr("Folder of the kernel's counters (/proc)."), tr("FOLDER"), "/proc")
{
    m_parser.setApplicationDescription(
        tr("Shows what the machine is doing: processors, load, memory, network and disks."));
    m_parser.addOptions({m_interval, m_window, m_keep, m_separate, m_seconds, m_screenshot, m_size,
                         m_record, m_proc});
    m_parser.addHelpOption();
    m_parser.addVersionOption();
}

std::optional<MonitorOptions> CommandLine::parse(QString *problem)
{
    m_parser.process(QCoreApplication::arguments());
    MonitorOptions options;
    if (!m_parser.positionalArguments().isEmpty()) {
        *problem = tr("unknown argument: %1").arg(m_parser.positionalArguments().join(' '));
        return std::nullopt;
    }
    const std::optional<QSize> size = parseSize(m_parser.value(m_size), problem);
    if (!size || !parseTimes(options, problem) || !parseFiles(options, problem)) {
        return std::nullopt;
    }
    if (m_parser.isSet(m_size)) {
        options.size = *size;
    }
    options.separate = m_parser.isSet(m_separate);
    options.procFolder = m_parser.value(m_proc);
    return options;
}

std::optional<int> CommandLine::number(const QCommandLineOption &option, int least, int most,
                                       QString *problem) const
{
    bool isNumber = false;
    const int value = m_parser.value(option).toInt(&isNumber);
    if (!isNumber || value < least || value > most) {
        *problem = tr("--%1 wants a whole number from %2 to %3, and not \"%4\"")
                       .arg(option.names().constFirst(), QString::number(least),
                            QString::number(most), m_parser.value(option));
        return std::nullopt;
    }
    return value;
}

bool CommandLine::parseTimes(MonitorOptions &options, QString *problem) const
{
    constexpr int ShortestInterval = 50; // ms: five ticks of the clock that counts processor time
    constexpr int LongestInterval = 60000;
    constexpr int LongestSpan = 604800; // s: a week

    const std::optional<int> interval =
        number(m_interval, ShortestInterval, LongestInterval, problem);
    const std::optional<int> window = number(m_window, 1, LongestSpan, problem);
    const std::optional<int> keep = number(m_keep, 1, LongestSpan, problem);
    if (!interval || !window || !keep) {
        return false;
    }
    if (m_parser.isSet(m_keep) && *keep < *window) {
        *problem = tr("--keep must not be less than --window: the view would be half empty");
        return false;
    }
    if (m_parser.isSet(m_seconds)) {
        options.seconds = number(m_seconds, 1, LongestSpan, problem);
        if (!options.seconds) {
            return false;
        }
    }
    options.feeding.interval = std::chrono::milliseconds(*interval);
    options.feeding.keep = *keep;
    if (m_parser.isSet(m_window)) {
        options.visibleSeconds = *window;
    }
    return true;
}

bool CommandLine::parseFiles(MonitorOptions &options, QString *problem) const
{
    options.screenshot = m_parser.value(m_screenshot);
    options.recording = m_parser.value(m_record);
    if (m_parser.isSet(m_screenshot) && (options.screenshot.isEmpty() || !options.seconds)) {
        *problem = tr("--screenshot needs a file to write, and --seconds to say when");
        return false;
    }
    if (m_parser.isSet(m_record) && options.recording.isEmpty()) {
        *problem = tr("--record needs a file to write");
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    const bool withoutDisplay = drawIntoMemoryWithoutDisplay();
    QApplication application(argc, argv);
    installTranslations(QLocale());
    QCoreApplication::setOrganizationName("QUARVChart5");
    QCoreApplication::setApplicationName("monitor");
    QCoreApplication::setApplicationVersion(MONITOR_VERSION);

    QString problem;
    std::optional<MonitorOptions> options = CommandLine().parse(&problem);
    if (!options) {
        return failWith(problem);
    }
    if (withoutDisplay && options->screenshot.isEmpty() && options->recording.isEmpty()) {
        return failWith(CommandLine::tr("there is no display; --screenshot writes a picture, "
                                        "--record a table"));
    }
    options->shown = !withoutDisplay && options->screenshot.isEmpty();
    Monitor monitor(*options);
    const SignalWatcher watcher;
    QObject::connect(&watcher, SIGNAL(interrupted()), &monitor, SLOT(slotEnd()));
    return monitor.start() ? application.exec() : ExitFailure;
}
