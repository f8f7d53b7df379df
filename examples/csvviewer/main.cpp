#include "launcher.h"

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
    std::optional<LaunchOptions> parse(QString *problem);

private:
    const QCommandLineOption m_screenshot;
    const QCommandLineOption m_size;
    const QCommandLineOption m_separate;
    const QCommandLineOption m_combine;
    QCommandLineParser m_parser;
};

CommandLine::CommandLine()
    : m_screenshot("screenshot", tr("Write a picture of the window as PNG, and end."),
                   tr("FILE.png"))
    , m_size("size", tr("Size of the window in pixels (1200x1000, or as last time)."), tr("WxH"),
             "1200x1000")
    , m_separate("separate", tr("Show each column in a pane of its own."))
    , m_combine("combine", tr("Show all columns in one pane."))
{
    m_parser.setApplicationDescription(
        tr("Shows the columns of a CSV or TSV file over the first one, which holds numbers or "
           "dates and times in ISO form."));
    m_parser.addOptions({m_screenshot, m_size, m_separate, m_combine});
    m_parser.addHelpOption();
    m_parser.addVersionOption();
    m_parser.addPositionalArgument(tr("FILE"), tr("The file to show."), tr("[FILE]"));
}

std::optional<LaunchOptions> CommandLine::parse(QString *problem)
{
    m_parser.process(QCoreApplication::arguments());
    LaunchOptions options;
    const QStringList files = m_parser.positionalArguments();
    options.fileName = files.value(0);
    options.screenshot = m_parser.value(m_screenshot);
    if (files.size() > 1) {
        *problem = tr("more than one file: %1").arg(files.join(' '));
        return std::nullopt;
    }
    if (m_parser.isSet(m_screenshot) && (files.isEmpty() || options.screenshot.isEmpty())) {
        *problem = tr("--screenshot needs a file to show and a file to write");
        return std::nullopt;
    }
    const std::optional<QSize> size = parseSize(m_parser.value(m_size), problem);
    if (!size) {
        return std::nullopt;
    }
    if (m_parser.isSet(m_size)) {
        options.size = *size;
    }
    if (m_parser.isSet(m_separate) && m_parser.isSet(m_combine)) {
        *problem = tr("--separate and --combine exclude each other");
        return std::nullopt;
    }
    if (m_parser.isSet(m_separate)) {
        options.paneMode = ViewerWindow::SeparatePanes;
    } else if (m_parser.isSet(m_combine)) {
        options.paneMode = ViewerWindow::CombinedPanes;
    }
    return options;
}

} // namespace

int main(int argc, char *argv[])
{
    const bool withoutDisplay = drawIntoMemoryWithoutDisplay();
    QApplication application(argc, argv);
    installTranslations(QLocale());
    QCoreApplication::setOrganizationName("QUARVChart5");
    QCoreApplication::setApplicationName("csvviewer");
    QCoreApplication::setApplicationVersion(CSVVIEWER_VERSION);

    QString problem;
    const std::optional<LaunchOptions> options = CommandLine().parse(&problem);
    if (!options) {
        return failWith(problem);
    }
    if (withoutDisplay && options->screenshot.isEmpty()) {
        return failWith(CommandLine::tr("there is no display; --screenshot writes a picture"));
    }
    Launcher launcher(*options);
    launcher.launch();
    return application.exec();
}
