#include "editors/serieseditor.h"

#include "editors/qtcolorbutton.h"
#include "editors/seriespropertiesdialog.h"
#include "model/staticchartmodel.h"
#include "support/dialoganswer.h"
#include "support/metatext.h"
#include "support/paintcounter.h"
#include "support/plainseries.h"
#include "support/quietplatform.h"
#include "support/recordingmodel.h"
#include "views/chartwidget.h"
#include "views/multichart.h"

#include <QApplication>
#include <QColorDialog>
#include <QHBoxLayout>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QPointer>
#include <QSpinBox>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QtTest>
#include <QUndoStack>

#include <memory>
#include <optional>

namespace {

const QColor Red(255, 0, 0);
const QColor Blue(0, 0, 255);

using PropertiesAnswer = DialogAnswer<SeriesPropertiesDialog>;
using ColorAnswer = DialogAnswer<QColorDialog>;

/// A red series of width 3.
std::unique_ptr<PlainSeries> redSeries()
{
    auto series = std::make_unique<PlainSeries>("a");
    series->m_color = Red;
    series->m_lineWidth = 3;
    series->updatePointImage();
    return series;
}

void accept(SeriesPropertiesDialog &dialog)
{
    dialog.accept();
}

void reject(SeriesPropertiesDialog &dialog)
{
    dialog.reject();
}

void close(SeriesPropertiesDialog &dialog, bool accepted)
{
    if (accepted) {
        dialog.accept();
    } else {
        dialog.reject();
    }
}

void chooseWidth(SeriesPropertiesDialog &dialog, int width)
{
    dialog.findChild<QSpinBox *>("lineWidthSpinBox")->setValue(width);
}

void acceptWidth7(SeriesPropertiesDialog &dialog)
{
    chooseWidth(dialog, 7);
    dialog.accept();
}

/// A sample of 40 by 16 pixels on a transparent ground.
QImage sampleOf(AbstractChartSeries &series)
{
    QPixmap pixmap(40, 16);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    series.paintLogo(&painter, QRect(0, 0, 40, 16));
    painter.end();
    return pixmap.toImage();
}

QImage shownBy(const SeriesEditor &editor)
{
    return editor.m_seriesButton->icon().pixmap(40, 16).toImage();
}

/// A real chart on the screen with the series "a", "b" and "c".
struct Chart
{
    Chart()
    {
        widget->setModel(model);
        widget->resize(400, 400);
        widget->show();
        for (const char *name : {"a", "b", "c"}) {
            auto *added = new PlainSeries(name);
            model->addSeries(added);
            series.append(added);
        }
    }

    bool isReady() const { return QTest::qWaitForWindowExposed(widget.get()) && settled(*model); }

    QList<SeriesEditor *> editors() const
    {
        return widget->legendView()->viewport()->findChildren<SeriesEditor *>();
    }

    /// The editor of a row, if it is open.
    SeriesEditor *editor(int row) const
    {
        for (SeriesEditor *open : editors()) {
            if (open->m_series == series.at(row)) {
                return open;
            }
        }
        return nullptr;
    }

    void click(int row, int column) const
    {
        QTreeView *legend = widget->legendView();
        const QPoint center = legend->visualRect(model->index(row, column)).center();
        QTest::mouseClick(legend->viewport(), Qt::LeftButton, Qt::NoModifier, center);
    }

    /// Opens the editor of a row. The first row, which is selected at first, has one already.
    SeriesEditor *open(int row) const
    {
        click(row, AbstractChartModel::LineColumn);
        const bool isOpen = QTest::qWaitFor([this, row] { return editor(row) != nullptr; });
        return isOpen ? editor(row) : nullptr;
    }

    std::unique_ptr<MultiChart> widget = std::make_unique<MultiChart>();
    std::unique_ptr<QToolBar> toolBar{widget->toolBar()};
    StaticChartModel *model = new StaticChartModel("QUARVChart5 tests", "tests"); // the legend's
    QList<PlainSeries *> series;                                                  // the model's
};

} // namespace

class TestSeriesEditor : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void metaObjectHasItsOrder();
    void layoutHasNoGaps();
    void buttonsHaveTheirProperties();
    void sampleTakesTheWidthOfTheCell();
    void startsWithoutSeriesOrImage();
    void showsSampleOfItsSeries();
    void nullSeriesIsIgnored();
    void withoutSeriesButtonsDoNothing();

    void clickOpensDialogOfTheSeries();
    void cancelChangesNothing();
    void acceptWithoutChangeIsAnnouncedOnce_data();
    void acceptWithoutChangeIsAnnouncedOnce();
    void acceptRenewsImageBeforeItAnnounces();
    void resetRestoresDefaultsAndAnnounces();
    void resetLeavesTheImage();
    void resetKeepsColorBeyondThePalette();

    void dialogOutlivesItsEditor_data();
    void dialogOutlivesItsEditor();
    void dialogWithoutEditorKeepsWhatWasEntered();
    void editorMayDieUnderColorDialog();
    void editorMayDieAfterAcceptance();
    void seriesMayDieUnderTheDialog();
    void editorAndSeriesMayDieUnderTheDialog();

    void clickInLegendOpensEditor();
    void clickOnNameOpensNone();
    void resetComesRoundToTheImage();
    void acceptedDialogUpdatesModelOnce_data();
    void acceptedDialogUpdatesModelOnce();
    void cancelledDialogRepaintsNothing();
    void changesAreNoUndoSteps();
    void rowMayGoUnderTheDialog();
    void modelMayDieUnderTheDialog();
    void chartMayDieUnderTheDialog_data();
    void chartMayDieUnderTheDialog();

private:
    std::optional<QuietPlatform> m_quiet; // dialogs have limited sizes
};

void TestSeriesEditor::init()
{
    m_quiet.emplace();
}

void TestSeriesEditor::cleanup()
{
    QVERIFY(!QApplication::activeModalWidget());
    m_quiet.reset();
}

void TestSeriesEditor::metaObjectHasItsOrder()
{
    QCOMPARE(ownMethodsText(SeriesEditor::staticMetaObject),
             QString("signal changed(QWidget*), public slot setSeries(AbstractChartSeries*), "
                     "private slot emitResetProperty(), private slot slotSeriesButtonClicked()"));
    QCOMPARE(ownPropertiesText(SeriesEditor::staticMetaObject), QString());
}

void TestSeriesEditor::layoutHasNoGaps()
{
    QWidget parent;
    const auto *editor = new SeriesEditor(&parent);
    const auto *layout = qobject_cast<QHBoxLayout *>(editor->layout());

    QCOMPARE(editor->parentWidget(), &parent);
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins(0, 0, 0, 0));
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->count(), 2);
    QCOMPARE(layout->itemAt(0)->widget(), editor->m_seriesButton);
    QCOMPARE(layout->itemAt(1)->widget(), editor->m_resetButton);
    for (const int i : {0, 1}) {
        QCOMPARE(layout->stretch(i), 0);
        QCOMPARE(layout->itemAt(i)->alignment(), Qt::Alignment());
    }
    QCOMPARE(editor->focusProxy(), editor->m_seriesButton);
}

void TestSeriesEditor::buttonsHaveTheirProperties()
{
    const SeriesEditor editor;

    for (const QToolButton *button : {editor.m_seriesButton, editor.m_resetButton}) {
        QCOMPARE(button->parentWidget(), &editor);
        QCOMPARE(button->toolButtonStyle(), Qt::ToolButtonIconOnly);
        QVERIFY(button->text().isEmpty());
        QVERIFY(button->toolTip().isEmpty());
    }
    QCOMPARE(editor.m_seriesButton->iconSize(), QSize(40, 16));
    QCOMPARE(editor.m_seriesButton->sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(editor.m_seriesButton->sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
    QCOMPARE(editor.m_resetButton->iconSize(), QSize(8, 8));
    QCOMPARE(editor.m_resetButton->sizePolicy().horizontalPolicy(), QSizePolicy::Fixed);
    QCOMPARE(editor.m_resetButton->sizePolicy().verticalPolicy(), QSizePolicy::MinimumExpanding);

    const QImage reset(":/chart/images/resetproperty.png");
    QVERIFY(!reset.isNull());
    QCOMPARE(editor.m_resetButton->icon().pixmap(8, 8).toImage(),
             QIcon(":/chart/images/resetproperty.png").pixmap(8, 8).toImage());
}

void TestSeriesEditor::sampleTakesTheWidthOfTheCell()
{
    SeriesEditor editor;
    editor.resize(200, 40);
    editor.layout()->activate();

    const QRect sample = editor.m_seriesButton->geometry();
    const QRect reset = editor.m_resetButton->geometry();

    QCOMPARE(sample.left(), 0);
    QCOMPARE(reset.left(), sample.left() + sample.width());
    QCOMPARE(reset.left() + reset.width(), 200);
    QCOMPARE(reset.width(), editor.m_resetButton->sizeHint().width());
    QCOMPARE(reset.height(), 40);
}

void TestSeriesEditor::startsWithoutSeriesOrImage()
{
    SeriesEditor editor;
    QVERIFY(!editor.m_series);

    editor.updateImage();

    QVERIFY(editor.m_seriesButton->icon().isNull());
}

void TestSeriesEditor::showsSampleOfItsSeries()
{
    const auto series = redSeries();
    SeriesEditor editor;

    editor.setSeries(series.get());

    QCOMPARE(editor.m_series, series.get());
    QCOMPARE(shownBy(editor), sampleOf(*series));
    QCOMPARE(shownBy(editor).size(), QSize(40, 16));
    QCOMPARE(shownBy(editor).pixelColor(20, 7), Red);
    QCOMPARE(shownBy(editor).pixelColor(20, 0).rgba(), QRgb(0)); // transparent black

    series->m_color = Blue;
    QCOMPARE(shownBy(editor).pixelColor(20, 7), Red);
    editor.updateImage();
    QCOMPARE(shownBy(editor), sampleOf(*series));
}

void TestSeriesEditor::nullSeriesIsIgnored()
{
    const auto series = redSeries();
    SeriesEditor editor;
    editor.setSeries(series.get());
    const qint64 image = editor.m_seriesButton->icon().cacheKey();

    editor.setSeries(nullptr);

    QCOMPARE(editor.m_series, series.get());
    QCOMPARE(editor.m_seriesButton->icon().cacheKey(), image);
}

void TestSeriesEditor::withoutSeriesButtonsDoNothing()
{
    SeriesEditor editor;
    const QSignalSpy changes(&editor, SIGNAL(changed(QWidget *)));
    const PropertiesAnswer answer{reject};

    editor.m_seriesButton->click();
    editor.m_resetButton->click();

    QVERIFY(!answer.isDone()); // no dialog came
    QCOMPARE(changes.size(), 0);
}

void TestSeriesEditor::clickOpensDialogOfTheSeries()
{
    const auto series = redSeries();
    SeriesEditor editor;
    editor.setSeries(series.get());
    const QDialog plain(&editor, Qt::WindowFlags());
    QWidget *parent = nullptr;
    const AbstractChartSeries *edited = nullptr;
    Qt::WindowFlags flags;
    const PropertiesAnswer answer{[&](SeriesPropertiesDialog &dialog) {
        parent = dialog.parentWidget();
        edited = dialog.m_series;
        flags = dialog.windowFlags();
        dialog.reject();
    }};

    QTest::mouseClick(editor.m_seriesButton, Qt::LeftButton);

    QVERIFY(answer.isDone());
    QCOMPARE(parent, &editor);
    QCOMPARE(edited, series.get());
    QCOMPARE(flags, plain.windowFlags());
}

void TestSeriesEditor::cancelChangesNothing()
{
    const auto series = redSeries();
    SeriesEditor editor;
    editor.setSeries(series.get());
    const qint64 image = editor.m_seriesButton->icon().cacheKey();
    const QSignalSpy changes(&editor, SIGNAL(changed(QWidget *)));
    const PropertiesAnswer answer{[](SeriesPropertiesDialog &dialog) {
        chooseWidth(dialog, 7);
        dialog.reject();
    }};

    editor.m_seriesButton->click();

    QVERIFY(answer.isDone());
    QCOMPARE(changes.size(), 0);
    QCOMPARE(series->m_lineWidth, 3);
    QVERIFY(!series->m_customized);
    QCOMPARE(editor.m_seriesButton->icon().cacheKey(), image);
}

void TestSeriesEditor::acceptWithoutChangeIsAnnouncedOnce_data()
{
    QTest::addColumn<bool>("customized");

    QTest::newRow("as it was made") << false;
    QTest::newRow("customized") << true;
}

void TestSeriesEditor::acceptWithoutChangeIsAnnouncedOnce()
{
    QFETCH(bool, customized);
    const auto series = redSeries();
    series->m_customized = customized;
    SeriesEditor editor;
    editor.setSeries(series.get());
    const qint64 image = editor.m_seriesButton->icon().cacheKey();
    const QSignalSpy changes(&editor, SIGNAL(changed(QWidget *)));
    const PropertiesAnswer answer{accept};

    editor.m_seriesButton->click();

    QVERIFY(answer.isDone());
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.constFirst().constFirst().value<QWidget *>(), &editor);
    QCOMPARE(series->m_customized, customized);
    QVERIFY(editor.m_seriesButton->icon().cacheKey() != image);
}

void TestSeriesEditor::acceptRenewsImageBeforeItAnnounces()
{
    const auto series = redSeries();
    SeriesEditor editor;
    editor.setSeries(series.get());
    QList<QImage> imagesAtSignal;
    connect(&editor, &SeriesEditor::changed, this, [&] { imagesAtSignal.append(shownBy(editor)); });
    const PropertiesAnswer answer{acceptWidth7};

    editor.m_seriesButton->click();

    QVERIFY(answer.isDone());
    QCOMPARE(series->m_lineWidth, 7);
    QVERIFY(series->m_customized);
    QCOMPARE(imagesAtSignal.size(), 1);
    QCOMPARE(imagesAtSignal.constFirst(), sampleOf(*series));
}

void TestSeriesEditor::resetRestoresDefaultsAndAnnounces()
{
    const auto series = redSeries();
    series->m_color = Blue;
    series->m_colorIndex = 1;
    series->m_defaults.colors[1] = QColor(9, 8, 7);
    series->m_pointSize = 9;
    series->m_pointsVisible = true;
    series->m_customized = true;
    SeriesEditor editor;
    editor.setSeries(series.get());
    const QSignalSpy changes(&editor, SIGNAL(changed(QWidget *)));
    bool customizedAtSignal = true;
    connect(&editor, &SeriesEditor::changed, this,
            [&] { customizedAtSignal = series->m_customized; });

    QTest::mouseClick(editor.m_resetButton, Qt::LeftButton);

    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.constFirst().constFirst().value<QWidget *>(), &editor);
    QVERIFY(!customizedAtSignal);
    QCOMPARE(series->m_color, QColor(9, 8, 7));
    QCOMPARE(series->m_lineWidth, SeriesSettings::defaultLineWidth());
    QCOMPARE(series->m_pointsVisible, SeriesSettings::defaultPointsVisible());
    QCOMPARE(series->m_pointSize, SeriesSettings::defaultPointsSize());
}

void TestSeriesEditor::resetLeavesTheImage()
{
    const auto series = redSeries();
    SeriesEditor editor;
    editor.setSeries(series.get());
    const qint64 image = editor.m_seriesButton->icon().cacheKey();

    editor.m_resetButton->click();

    QCOMPARE(editor.m_seriesButton->icon().cacheKey(), image);
}

void TestSeriesEditor::resetKeepsColorBeyondThePalette()
{
    const auto series = redSeries();
    series->m_color = QColor(9, 8, 7);
    series->m_colorIndex = 10;
    series->m_customized = true;
    SeriesEditor editor;
    editor.setSeries(series.get());

    editor.m_resetButton->click();

    QCOMPARE(series->m_color, QColor(9, 8, 7));
    QCOMPARE(series->m_lineWidth, SeriesSettings::defaultLineWidth());
    QVERIFY(!series->m_customized);
}

void TestSeriesEditor::dialogOutlivesItsEditor_data()
{
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<int>("width");

    QTest::newRow("accepted") << true << 7;
    QTest::newRow("cancelled") << false << 3;
}

void TestSeriesEditor::dialogOutlivesItsEditor()
{
    QFETCH(bool, accepted);
    QFETCH(int, width);
    const auto series = redSeries();
    auto *window = new QWidget; // whose death is the editor's
    auto *editor = new SeriesEditor(window);
    editor->setSeries(series.get());
    const QSignalSpy changes(editor, SIGNAL(changed(QWidget *)));
    const PropertiesAnswer answer{[&](SeriesPropertiesDialog &) { delete window; },
                                  [&](SeriesPropertiesDialog &dialog) {
                                      chooseWidth(dialog, 7);
                                      close(dialog, accepted);
                                  }};

    editor->m_seriesButton->click();

    QVERIFY(answer.isDone()); // the dialog stood again
    QCOMPARE(changes.size(), 0);
    QCOMPARE(series->m_lineWidth, width);
}

void TestSeriesEditor::dialogWithoutEditorKeepsWhatWasEntered()
{
    const auto series = redSeries();
    auto *editor = new SeriesEditor;
    editor->setSeries(series.get());
    QPoint position;
    bool isModal = false;
    const PropertiesAnswer answer{[&](SeriesPropertiesDialog &dialog) {
                                      chooseWidth(dialog, 7);
                                      dialog.move(40, 50);
                                      delete editor;
                                  },
                                  [&](SeriesPropertiesDialog &dialog) {
                                      position = dialog.pos();
                                      isModal = dialog.isModal();
                                      dialog.accept();
                                  }};

    editor->m_seriesButton->click();

    QVERIFY(answer.isDone());
    QCOMPARE(position, QPoint(40, 50));
    QVERIFY(isModal);
    QCOMPARE(series->m_lineWidth, 7);
}

void TestSeriesEditor::editorMayDieUnderColorDialog()
{
    const auto series = redSeries();
    auto *editor = new SeriesEditor;
    editor->setSeries(series.get());
    const ColorAnswer colorAnswer{[&](QColorDialog &) { delete editor; },
                                  [](QColorDialog &dialog) {
                                      dialog.setCurrentColor(Blue);
                                      dialog.accept();
                                  }};
    const PropertiesAnswer answer{
        [](SeriesPropertiesDialog &dialog) { dialog.findChild<QtColorButton *>()->click(); },
        accept};

    editor->m_seriesButton->click();

    QVERIFY(colorAnswer.isDone());
    QVERIFY(answer.isDone());
    QCOMPARE(series->m_color, Blue);
    QVERIFY(series->m_customized);
}

void TestSeriesEditor::editorMayDieAfterAcceptance()
{
    const auto series = redSeries();
    auto *editor = new SeriesEditor;
    editor->setSeries(series.get());
    const QSignalSpy changes(editor, SIGNAL(changed(QWidget *)));
    const PropertiesAnswer answer{[&](SeriesPropertiesDialog &dialog) {
        acceptWidth7(dialog);
        delete editor; // before the dialog's loop has ended
    }};

    editor->m_seriesButton->click();

    QVERIFY(answer.isDone());
    QCOMPARE(series->m_lineWidth, 7);
    QCOMPARE(changes.size(), 0);
}

void TestSeriesEditor::seriesMayDieUnderTheDialog()
{
    auto series = redSeries();
    SeriesEditor editor;
    editor.setSeries(series.get());
    const qint64 image = editor.m_seriesButton->icon().cacheKey();
    const QSignalSpy changes(&editor, SIGNAL(changed(QWidget *)));
    const PropertiesAnswer answer{[&](SeriesPropertiesDialog &) { series.reset(); }, acceptWidth7};

    editor.m_seriesButton->click();

    QVERIFY(answer.isDone());
    QCOMPARE(changes.size(), 0);
    QCOMPARE(editor.m_seriesButton->icon().cacheKey(), image);
}

void TestSeriesEditor::editorAndSeriesMayDieUnderTheDialog()
{
    auto series = redSeries();
    auto *editor = new SeriesEditor;
    editor->setSeries(series.get());
    const QSignalSpy changes(editor, SIGNAL(changed(QWidget *)));
    const PropertiesAnswer answer{[&](SeriesPropertiesDialog &) {
                                      delete editor;
                                      series.reset();
                                  },
                                  acceptWidth7};

    editor->m_seriesButton->click();

    QVERIFY(answer.isDone());
    QCOMPARE(changes.size(), 0);
}

void TestSeriesEditor::clickInLegendOpensEditor()
{
    const Chart chart;
    QVERIFY(chart.isReady());

    for (const int row : {1, 2}) {
        QVERIFY(!chart.editor(row));
        const SeriesEditor *editor = chart.open(row);
        QVERIFY(editor);
        QCOMPARE(shownBy(*editor), sampleOf(*chart.series.at(row)));
    }
}

void TestSeriesEditor::clickOnNameOpensNone()
{
    const Chart chart;
    QVERIFY(chart.isReady());
    QVERIFY(!chart.editor(1));

    chart.click(1, AbstractChartModel::NameColumn);
    QCoreApplication::processEvents();

    QVERIFY(!chart.editor(1));
}

void TestSeriesEditor::resetComesRoundToTheImage()
{
    const Chart chart;
    QVERIFY(chart.isReady());
    PlainSeries *series = chart.series.at(1);
    const QImage before = sampleOf(*series);
    series->m_lineWidth = 5;
    series->m_customized = true;
    const SeriesEditor *editor = chart.open(1);
    QVERIFY(editor);
    QVERIFY(shownBy(*editor) != before);
    QSignalSpy changes(chart.model, SIGNAL(dataChanged(QModelIndex, QModelIndex, QVector<int>)));

    QTest::mouseClick(editor->m_resetButton, Qt::LeftButton);

    QCOMPARE(changes.size(), 1);
    QVERIFY(!changes.constFirst().at(0).toModelIndex().isValid());
    QCOMPARE(chart.editor(1), editor); // still open
    QCOMPARE(shownBy(*editor), before);
    QVERIFY(!series->m_customized);
}

void TestSeriesEditor::acceptedDialogUpdatesModelOnce_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<bool>("customized");

    QTest::newRow("unchanged") << SeriesSettings::defaultLineWidth() << false;
    QTest::newRow("changed") << 6 << true;
}

void TestSeriesEditor::acceptedDialogUpdatesModelOnce()
{
    QFETCH(int, width);
    QFETCH(bool, customized);
    const Chart chart;
    QVERIFY(chart.isReady());
    const QPointer<SeriesEditor> editor = chart.open(1);
    QVERIFY(editor);
    QVERIFY(settled(*chart.model));
    PaintCounter paints(chart.model->mainChart());
    paints.take();
    const QSignalSpy changes(chart.model,
                             SIGNAL(dataChanged(QModelIndex, QModelIndex, QVector<int>)));
    const PropertiesAnswer answer{[=](SeriesPropertiesDialog &dialog) {
        chooseWidth(dialog, width);
        dialog.accept();
    }};

    QTest::mouseClick(editor->m_seriesButton, Qt::LeftButton);

    QVERIFY(answer.isDone());
    QCOMPARE(changes.size(), 1);
    QCOMPARE(chart.series.at(1)->m_lineWidth, width);
    QCOMPARE(chart.series.at(1)->m_customized, customized);
    QVERIFY(editor);
    QCOMPARE(shownBy(*editor), sampleOf(*chart.series.at(1)));
    QVERIFY(settled(*chart.model));
    QVERIFY(paints.take() > 0); // the pane follows
}

void TestSeriesEditor::cancelledDialogRepaintsNothing()
{
    const Chart chart;
    QVERIFY(chart.isReady());
    const SeriesEditor *editor = chart.open(1);
    QVERIFY(editor);
    QVERIFY(settled(*chart.model));
    PaintCounter paints(chart.model->mainChart());
    paints.take();
    const QSignalSpy changes(chart.model,
                             SIGNAL(dataChanged(QModelIndex, QModelIndex, QVector<int>)));
    const PropertiesAnswer answer{reject};

    QTest::mouseClick(editor->m_seriesButton, Qt::LeftButton);

    QVERIFY(answer.isDone());
    QCOMPARE(changes.size(), 0);
    QVERIFY(!chart.model->updatePointsInProgress());
    QCOMPARE(paints.take(), 0);
}

void TestSeriesEditor::changesAreNoUndoSteps()
{
    const Chart chart;
    QVERIFY(chart.isReady());
    const int steps = chart.model->m_undoStack->count();
    const SeriesEditor *editor = chart.open(1);
    QVERIFY(editor);
    const PropertiesAnswer answer{acceptWidth7};

    editor->m_seriesButton->click();
    editor->m_resetButton->click();

    QVERIFY(answer.isDone());
    QCOMPARE(chart.model->m_undoStack->count(), steps);
}

void TestSeriesEditor::rowMayGoUnderTheDialog()
{
    const Chart chart;
    QVERIFY(chart.isReady());
    const QPointer<SeriesEditor> editor = chart.open(1);
    QVERIFY(editor);
    bool isEditorGone = false;
    const PropertiesAnswer answer{
        [&](SeriesPropertiesDialog &) { chart.model->removeSeries(chart.series.at(1)); },
        [&](SeriesPropertiesDialog &dialog) {
            isEditorGone = !editor;
            acceptWidth7(dialog);
        }};

    editor->m_seriesButton->click();

    QVERIFY(answer.isDone());
    QVERIFY(isEditorGone);
    QCOMPARE(chart.model->m_series.size(), 2);
    QCOMPARE(chart.series.at(1)->m_lineWidth, 7); // lives on in the history
    QTRY_VERIFY(!editor);
}

void TestSeriesEditor::modelMayDieUnderTheDialog()
{
    const Chart chart;
    QVERIFY(chart.isReady());
    const QPointer<SeriesEditor> editor = chart.open(1);
    QVERIFY(editor);
    const PropertiesAnswer answer{[&](SeriesPropertiesDialog &) { delete chart.model; },
                                  acceptWidth7};

    editor->m_seriesButton->click();

    QVERIFY(answer.isDone());
    QVERIFY(!chart.widget->m_model);
}

void TestSeriesEditor::chartMayDieUnderTheDialog_data()
{
    QTest::addColumn<bool>("accepted");

    QTest::newRow("accepted") << true;
    QTest::newRow("cancelled") << false;
}

void TestSeriesEditor::chartMayDieUnderTheDialog()
{
    QFETCH(bool, accepted);
    Chart chart;
    QVERIFY(chart.isReady());
    const QPointer<SeriesEditor> editor = chart.open(1);
    QVERIFY(editor);
    const PropertiesAnswer answer{[&](SeriesPropertiesDialog &) { chart.widget.reset(); },
                                  [=](SeriesPropertiesDialog &dialog) {
                                      chooseWidth(dialog, 7);
                                      close(dialog, accepted);
                                  }};

    editor->m_seriesButton->click();

    QVERIFY(answer.isDone());
    QVERIFY(!chart.widget);
    QVERIFY(!editor);
}

QTEST_MAIN(TestSeriesEditor)
#include "tst_serieseditor.moc"
