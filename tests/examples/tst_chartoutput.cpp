#include "common/chartoutput.h"

#include "model/staticchartmodel.h"
#include "support/boxanswer.h"
#include "support/modelsetup.h"
#include "support/quietplatform.h"
#include "views/multichart.h"

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QImage>
#include <QInputDialog>
#include <QPrintPreviewWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolBar>
#include <QtTest>

#include <functional>
#include <memory>

namespace {

const QSize ChartSize(400, 300);

/// Gives dialogs one after the other, once they stand, to functions; each must end its dialog.
class DialogUser : public QObject
{
public:
    explicit DialogUser(QList<std::function<void(QDialog &)>> steps)
        : m_steps(std::move(steps))
    {
        connect(&m_timer, &QTimer::timeout, this, &DialogUser::look);
        m_timer.start(5); // ms
    }

    bool isDone() const { return m_steps.isEmpty(); }

private:
    void look()
    {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog || dialog == m_last) {
            return;
        }
        m_last = dialog;
        if (m_steps.isEmpty()) {
            dialog->reject(); // not expected
            return;
        }
        m_steps.takeFirst()(*dialog);
    }

    QuietPlatform m_quiet;
    QTimer m_timer;
    QList<std::function<void(QDialog &)>> m_steps;
    QPointer<QDialog> m_last;
};

/// Chooses a file in the dialog, and before that the form of the given number.
std::function<void(QDialog &)> choose(const QString &fileName, int filter = 0)
{
    return [=](QDialog &dialog) {
        auto &files = dynamic_cast<QFileDialog &>(dialog);
        files.selectNameFilter(files.nameFilters().value(filter));
        emit files.filterSelected(files.nameFilters().value(filter));
        files.selectFile(fileName);
        QMetaObject::invokeMethod(&files, "accept");
    };
}

void reject(QDialog &dialog)
{
    dialog.reject();
}

} // namespace

class TestChartOutput : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void offersActions();
    void writesPictureOfItsScale();
    void tellsWhatGoesWrong();
    void exportsPictureByDialogs_data();
    void exportsPictureByDialogs();
    void asksForScaleOfPixelsOnly();
    void writesNothingWhenCancelled_data();
    void writesNothingWhenCancelled();
    void savesSamplesByDialog();
    void previewsPrint();

private:
    QAction *action(const QString &text) const;

    QTemporaryDir m_folder;
    std::unique_ptr<QWidget> m_window;
    MultiChart *m_chart = nullptr;   ///< The window's.
    ChartOutput *m_output = nullptr; ///< The window's.
    std::unique_ptr<QToolBar> m_toolBar;
};

void TestChartOutput::initTestCase()
{
    QVERIFY(m_folder.isValid());
}

void TestChartOutput::init()
{
    m_window = std::make_unique<QWidget>();
    m_chart = new MultiChart(m_window.get());
    m_toolBar.reset(m_chart->toolBar());
    m_output = new ChartOutput(*m_chart, m_window.get());
    auto *model = new StaticChartModel("QUARVChart5 tests", "output");
    m_chart->setModel(model);
    addSeries(*model, "a", {1.0, 2.0});
    m_window->resize(ChartSize);
    m_chart->resize(ChartSize);
    const QuietPlatform quiet;
    m_window->show();
}

void TestChartOutput::cleanup()
{
    m_window.reset();
}

QAction *TestChartOutput::action(const QString &text) const
{
    const QList<QAction *> actions = m_output->actions();
    for (QAction *action : actions) {
        if (action && action->text().remove('&') == text) {
            return action;
        }
    }
    return nullptr;
}

void TestChartOutput::offersActions()
{
    for (const char *text :
         {"Export picture...", "Save samples...", "Print preview...", "Print..."}) {
        QVERIFY2(action(text), text);
    }
    QCOMPARE(action("Save samples...")->shortcut(), QKeySequence(QKeySequence::Save));
    QCOMPARE(action("Print...")->shortcut(), QKeySequence(QKeySequence::Print));
}

void TestChartOutput::writesPictureOfItsScale()
{
    const QString once = m_folder.filePath("once.png");
    const QString twice = m_folder.filePath("twice.png");
    QVERIFY(m_output->writePicture(once, 1.0));
    QVERIFY(m_output->writePicture(twice, 2.0));

    QCOMPARE(QImage(once).width(), ChartSize.width());
    QCOMPARE(QImage(twice).size(), 2 * QImage(once).size());
}

void TestChartOutput::tellsWhatGoesWrong()
{
    const QString fileName = m_folder.filePath("no such folder/picture.png");
    BoxAnswer answer(QMessageBox::Ok);

    QVERIFY(!m_output->writePicture(fileName, 1.0));
    QVERIFY2(answer.m_text.contains(fileName), qPrintable(answer.m_text));
    QCOMPARE(answer.m_parent, m_window.get());
    QVERIFY(!m_output->writeSamples(fileName));
    QCOMPARE(answer.m_count, 2);
}

void TestChartOutput::exportsPictureByDialogs_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("filter");
    QTest::addColumn<QString>("written");
    QTest::addColumn<QByteArray>("start");

    QTest::newRow("PNG") << "a.png" << 0 << "a.png" << QByteArray("\x89PNG");
    QTest::newRow("SVG") << "b.svg" << 1 << "b.svg" << QByteArray("<?xml");
    QTest::newRow("PDF") << "c.pdf" << 2 << "c.pdf" << QByteArray("%PDF");
    QTest::newRow("the suffix decides") << "d.pdf" << 0 << "d.pdf" << QByteArray("%PDF");
    QTest::newRow("PNG without suffix") << "e" << 0 << "e.png" << QByteArray("\x89PNG");
    QTest::newRow("SVG without suffix") << "f" << 1 << "f.svg" << QByteArray("<?xml");
}

void TestChartOutput::exportsPictureByDialogs()
{
    QFETCH(QString, name);
    QFETCH(int, filter);
    QFETCH(QString, written);
    QFETCH(QByteArray, start);

    const bool isPng = written.endsWith("png");
    QList<std::function<void(QDialog &)>> steps{choose(m_folder.filePath(name), filter)};
    if (isPng) {
        steps.append([](QDialog &dialog) {
            auto &scale = dynamic_cast<QInputDialog &>(dialog);
            scale.setDoubleValue(3.0);
            scale.accept();
        });
    }
    const DialogUser user(steps);
    action("Export picture...")->trigger();

    QVERIFY(user.isDone());
    QFile file(m_folder.filePath(written));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.read(start.size()) == start);
    if (isPng) {
        QCOMPARE(QImage(file.fileName()).width(), 3 * ChartSize.width());
    }
}

void TestChartOutput::asksForScaleOfPixelsOnly()
{
    bool asked = false;
    const DialogUser user({choose(m_folder.filePath("asks.png")), [&asked](QDialog &dialog) {
                               asked = qobject_cast<QInputDialog *>(&dialog);
                               dialog.reject();
                           }});
    action("Export picture...")->trigger();

    QVERIFY(asked);
    QVERIFY(!QFile::exists(m_folder.filePath("asks.png"))); // cancelled
}

void TestChartOutput::writesNothingWhenCancelled_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("picture") << "Export picture...";
    QTest::newRow("samples") << "Save samples...";
}

void TestChartOutput::writesNothingWhenCancelled()
{
    QFETCH(QString, text);

    const QStringList before = QDir(m_folder.path()).entryList();
    const DialogUser user({reject});
    action(text)->trigger();
    QVERIFY(user.isDone());
    QCOMPARE(QDir(m_folder.path()).entryList(), before);
}

void TestChartOutput::savesSamplesByDialog()
{
    const DialogUser user({choose(m_folder.filePath("samples"))});
    action("Save samples...")->trigger();

    QFile file(m_folder.filePath("samples.csv"));
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    QCOMPARE(file.readAll().simplified(), QByteArray("X,a 0,1 1,2"));
}

void TestChartOutput::previewsPrint()
{
    int pages = 0;
    const DialogUser user({[&pages](QDialog &dialog) {
        pages = dialog.findChild<QPrintPreviewWidget *>()->pageCount();
        dialog.reject();
    }});
    action("Print preview...")->trigger();
    QCOMPARE(pages, 1);
}

QTEST_MAIN(TestChartOutput)
#include "tst_chartoutput.moc"
