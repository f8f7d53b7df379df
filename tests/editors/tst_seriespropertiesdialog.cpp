#include "editors/seriespropertiesdialog.h"

#include "editors/qtcolorbutton.h"
#include "support/metatext.h"
#include "support/plainseries.h"
#include "support/quietplatform.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTranslator>
#include <QtTest>
#include <QVBoxLayout>

#include <memory>
#include <optional>

namespace {

const QColor Red(255, 0, 0);
const QColor PaleBlue(0, 0, 255, 102);

/// A red series of width 3 with symbols of 6 pixels, not customized.
class StyledSeries : public PlainSeries
{
public:
    StyledSeries()
        : PlainSeries("a")
    {
        m_color = Red;
        m_lineWidth = 3;
        m_pointsVisible = true;
        m_pointSize = 6;
        updatePointImage();
    }
};

QString styleText(const AbstractChartSeries &series)
{
    return QString("%1 width %2 points %3 size %4%5")
        .arg(series.m_color.name(QColor::HexArgb))
        .arg(series.m_lineWidth)
        .arg(series.m_pointsVisible)
        .arg(series.m_pointSize)
        .arg(series.m_customized ? QStringLiteral(" customized") : QString());
}

const QString StyleAtFirst = QStringLiteral("#ffff0000 width 3 points 1 size 6");

/// The symbol that a series of this colour and size renders.
QImage symbol(const QColor &color, int size)
{
    StyledSeries series;
    series.m_color = color;
    series.m_pointSize = size;
    series.updatePointImage();
    return series.m_pointImage;
}

/// A dialog and its controls.
struct Form
{
    explicit Form(AbstractChartSeries *series, QWidget *parent = nullptr,
                  Qt::WindowFlags flags = Qt::WindowFlags())
        : dialog(series, parent, flags)
        , color(dialog.findChild<QtColorButton *>("lineColorToolButton"))
        , lineWidth(dialog.findChild<QSpinBox *>("lineWidthSpinBox"))
        , showPoints(dialog.findChild<QCheckBox *>("showPointsCheckBox"))
        , pointSize(dialog.findChild<QSpinBox *>("pointSizeSpinBox"))
        , buttons(dialog.findChild<QDialogButtonBox *>("buttonBox"))
    {
    }

    bool isComplete() const { return color && lineWidth && showPoints && pointSize && buttons; }

    SeriesPropertiesDialog dialog;
    QtColorButton *color;
    QSpinBox *lineWidth;
    QCheckBox *showPoints;
    QSpinBox *pointSize;
    QDialogButtonBox *buttons;
};

/// Shows where a text comes from: "context:text".
class ContextTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        return QString("%1:%2").arg(context, text);
    }
};

/// The texts of the form as one: title, group, labels, button, its tool tip, check box.
QString formTexts(const SeriesPropertiesDialog &dialog)
{
    const auto *button = dialog.findChild<QtColorButton *>("lineColorToolButton");
    return QStringList{dialog.windowTitle(),
                       dialog.findChild<QGroupBox *>("groupBox")->title(),
                       dialog.findChild<QLabel *>("label")->text(),
                       button->toolTip(),
                       button->text(),
                       dialog.findChild<QLabel *>("label_2")->text(),
                       dialog.findChild<QLabel *>("label_3")->text(),
                       dialog.findChild<QCheckBox *>("showPointsCheckBox")->text()}
        .join('|');
}

} // namespace

class TestSeriesPropertiesDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void addsNothingToTheMetaObject();
    void formHasItsParts_data();
    void formHasItsParts();
    void dialogStacksGroupAndButtons();
    void gridHasItsCells_data();
    void gridHasItsCells();
    void spacerTakesTheRest();
    void controlsHaveTheirProperties();
    void textsAreTheForms();
    void textsAreTranslatedInTheContextOfTheDialog();
    void titleIsThatOfTheGroup();
    void tabWalksThroughTheControls();

    void takesParentAndFlags();
    void showsTheSeries();
    void spinBoxesKeepTheirRange_data();
    void spinBoxesKeepTheirRange();

    void acceptWritesEverythingIfAnythingChanged_data();
    void acceptWritesEverythingIfAnythingChanged();
    void acceptWithoutChangeLeavesCustomized_data();
    void acceptWithoutChangeLeavesCustomized();
    void alphaAloneIsAChange();
    void clampedValueCountsAsChange_data();
    void clampedValueCountsAsChange();
    void pointSizeOneKeepsSizeAndClearsSymbol();
    void otherMembersStay();
    void rejectWritesNothing();
    void acceptWithoutSeriesOnlyCloses();
    void seriesMayDieFirst();

    void buttonsCloseTheDialog_data();
    void buttonsCloseTheDialog();
    void keysCloseTheDialog_data();
    void keysCloseTheDialog();

private:
    std::optional<QuietPlatform> m_quiet; // the layout limits the size of the window
};

void TestSeriesPropertiesDialog::init()
{
    m_quiet.emplace();
}

void TestSeriesPropertiesDialog::cleanup()
{
    m_quiet.reset();
}

void TestSeriesPropertiesDialog::addsNothingToTheMetaObject()
{
    QCOMPARE(ownMethodsText(SeriesPropertiesDialog::staticMetaObject), QString());
    QCOMPARE(ownPropertiesText(SeriesPropertiesDialog::staticMetaObject), QString());
}

void TestSeriesPropertiesDialog::formHasItsParts_data()
{
    QTest::addColumn<QByteArray>("className");

    const QPair<const char *, const char *> parts[] = {
        {"verticalLayout", "QVBoxLayout"},
        {"groupBox", "QGroupBox"},
        {"gridLayout", "QGridLayout"},
        {"label", "QLabel"},
        {"lineColorToolButton", "QtColorButton"},
        {"label_2", "QLabel"},
        {"lineWidthSpinBox", "QSpinBox"},
        {"label_3", "QLabel"},
        {"showPointsCheckBox", "QCheckBox"},
        {"pointSizeSpinBox", "QSpinBox"},
        {"buttonBox", "QDialogButtonBox"},
    };
    for (const auto &[name, className] : parts) {
        QTest::newRow(name) << QByteArray(className);
    }
}

void TestSeriesPropertiesDialog::formHasItsParts()
{
    QFETCH(QByteArray, className);
    StyledSeries series;
    const SeriesPropertiesDialog dialog(&series);

    const auto parts = dialog.findChildren<QObject *>(QTest::currentDataTag());

    QCOMPARE(parts.size(), 1);
    QCOMPARE(QByteArray(parts.constFirst()->metaObject()->className()), className);
}

void TestSeriesPropertiesDialog::dialogStacksGroupAndButtons()
{
    StyledSeries series;
    const SeriesPropertiesDialog dialog(&series);
    const auto *layout = dialog.findChild<QVBoxLayout *>("verticalLayout");
    auto *group = dialog.findChild<QGroupBox *>("groupBox");

    QCOMPARE(dialog.objectName(), QString("SeriesPropertiesDialog"));
    QCOMPARE(dialog.size(), QSize(400, 300));
    QCOMPARE(dialog.layout(), layout);
    QCOMPARE(layout->count(), 2);
    QCOMPARE(layout->itemAt(0)->widget(), group);
    QCOMPARE(layout->itemAt(1)->widget(), dialog.findChild<QDialogButtonBox *>("buttonBox"));
    QCOMPARE(group->layout(), dialog.findChild<QGridLayout *>("gridLayout"));
}

void TestSeriesPropertiesDialog::gridHasItsCells_data()
{
    QTest::addColumn<QString>("cell");

    QTest::newRow("label") << "0,0 1x1";
    QTest::newRow("lineColorToolButton") << "0,1 1x1";
    QTest::newRow("label_2") << "1,0 1x1";
    QTest::newRow("lineWidthSpinBox") << "1,1 1x1";
    QTest::newRow("showPointsCheckBox") << "2,0 1x2";
    QTest::newRow("label_3") << "3,0 1x1";
    QTest::newRow("pointSizeSpinBox") << "3,1 1x1";
    QTest::newRow("verticalSpacer") << "4,0 1x2"; // the one item that is no widget
}

void TestSeriesPropertiesDialog::gridHasItsCells()
{
    QFETCH(QString, cell);
    StyledSeries series;
    const SeriesPropertiesDialog dialog(&series);
    auto *grid = dialog.findChild<QGridLayout *>("gridLayout");
    QCOMPARE(grid->count(), 8);

    QStringList cells;
    for (int i = 0; i < grid->count(); ++i) {
        const QWidget *widget = grid->itemAt(i)->widget();
        const QString name = widget ? widget->objectName() : QStringLiteral("verticalSpacer");
        if (name == QTest::currentDataTag()) {
            int row, column, rows, columns;
            grid->getItemPosition(i, &row, &column, &rows, &columns);
            cells.append(QString("%1,%2 %3x%4").arg(row).arg(column).arg(rows).arg(columns));
        }
    }

    QCOMPARE(cells.join('|'), cell);
}

void TestSeriesPropertiesDialog::spacerTakesTheRest()
{
    StyledSeries series;
    const SeriesPropertiesDialog dialog(&series);
    const auto *grid = dialog.findChild<QGridLayout *>("gridLayout");
    QSpacerItem *spacer = grid->itemAtPosition(4, 0)->spacerItem();

    QVERIFY(spacer);
    QCOMPARE(spacer->sizeHint(), QSize(357, 73));
    QCOMPARE(spacer->sizePolicy().horizontalPolicy(), QSizePolicy::Minimum);
    QCOMPARE(spacer->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
}

void TestSeriesPropertiesDialog::controlsHaveTheirProperties()
{
    StyledSeries series;
    const Form form(&series);
    QVERIFY(form.isComplete());

    const QSizePolicy policy = form.color->sizePolicy();
    QCOMPARE(policy.horizontalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(policy.verticalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(policy.horizontalStretch(), 0);
    QCOMPARE(policy.verticalStretch(), 0);
    QCOMPARE(policy.hasHeightForWidth(), QtColorButton().sizePolicy().hasHeightForWidth());
    for (const QSpinBox *spinBox : {form.lineWidth, form.pointSize}) {
        QCOMPARE(spinBox->minimum(), 1);
        QCOMPARE(spinBox->maximum(), 10);
    }
    QCOMPARE(form.buttons->orientation(), Qt::Horizontal);
    QCOMPARE(form.buttons->standardButtons(),
             QDialogButtonBox::StandardButtons(QDialogButtonBox::Ok | QDialogButtonBox::Cancel));
}

void TestSeriesPropertiesDialog::textsAreTheForms()
{
    StyledSeries series;
    const SeriesPropertiesDialog dialog(&series);

    QCOMPARE(formTexts(dialog),
             QString("Series properties|Series properties|Line color|Change line color|...|"
                     "Line width|Point size|Show points"));
}

void TestSeriesPropertiesDialog::textsAreTranslatedInTheContextOfTheDialog()
{
    StyledSeries series;
    ContextTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const auto dialog = std::make_unique<SeriesPropertiesDialog>(&series);
    QCoreApplication::removeTranslator(&translator);

    const QStringList texts = formTexts(*dialog).split('|');

    QCOMPARE(texts.size(), 8);
    for (const QString &text : texts) {
        QVERIFY2(text.startsWith("SeriesPropertiesDialog:"), qPrintable(text));
    }
}

void TestSeriesPropertiesDialog::titleIsThatOfTheGroup()
{
    StyledSeries series;
    const SeriesPropertiesDialog dialog(&series);

    QCOMPARE(dialog.windowTitle(), dialog.findChild<QGroupBox *>("groupBox")->title());
}

void TestSeriesPropertiesDialog::tabWalksThroughTheControls()
{
    StyledSeries series;
    Form form(&series);
    form.dialog.show();
    QApplication::setActiveWindow(&form.dialog);
    QVERIFY(QTest::qWaitForWindowActive(&form.dialog));
    form.color->setFocus();

    QStringList names;
    for (int i = 0; i < 5; ++i) {
        QWidget *focus = form.dialog.focusWidget();
        QVERIFY(focus);
        const bool isButton = focus->parentWidget() == form.buttons;
        names.append(isButton ? form.buttons->objectName() : focus->objectName());
        QTest::keyClick(focus, Qt::Key_Tab);
    }

    QCOMPARE(names.join(' '), QString("lineColorToolButton lineWidthSpinBox showPointsCheckBox "
                                      "pointSizeSpinBox buttonBox"));
}

void TestSeriesPropertiesDialog::takesParentAndFlags()
{
    StyledSeries series;
    QWidget parent;
    const SeriesPropertiesDialog framed(&series, &parent, Qt::WindowFlags());
    const SeriesPropertiesDialog frameless(&series, &parent, Qt::Dialog | Qt::FramelessWindowHint);

    QCOMPARE(framed.parentWidget(), &parent);
    QCOMPARE(framed.windowType(), Qt::Dialog);
    QVERIFY(!framed.windowFlags().testFlag(Qt::FramelessWindowHint));
    QCOMPARE(frameless.parentWidget(), &parent);
    QVERIFY(frameless.windowFlags().testFlag(Qt::FramelessWindowHint));
    QCOMPARE(framed.m_series, &series);
    QVERIFY(framed.ui);
}

void TestSeriesPropertiesDialog::showsTheSeries()
{
    StyledSeries series;
    series.m_color = PaleBlue;
    const Form form(&series);

    QCOMPARE(form.color->color(), PaleBlue);
    QCOMPARE(form.lineWidth->value(), 3);
    QVERIFY(form.showPoints->isChecked());
    QCOMPARE(form.pointSize->value(), 6);

    series.m_pointsVisible = false;
    QVERIFY(!Form(&series).showPoints->isChecked());
}

void TestSeriesPropertiesDialog::spinBoxesKeepTheirRange_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("value");

    QTest::newRow("lowest") << "1" << 1;
    QTest::newRow("highest") << "10" << 10;
    QTest::newRow("above: the second digit is refused") << "11" << 1;
    QTest::newRow("far above") << "25" << 2;
    QTest::newRow("below: the former value stays") << "0" << 4;
    QTest::newRow("negative") << "-3" << 3;
}

void TestSeriesPropertiesDialog::spinBoxesKeepTheirRange()
{
    QFETCH(QString, typed);
    QFETCH(int, value);
    StyledSeries series;
    const Form form(&series);

    for (QSpinBox *spinBox : {form.lineWidth, form.pointSize}) {
        spinBox->setValue(0);
        QCOMPARE(spinBox->value(), 1);
        spinBox->setValue(11);
        QCOMPARE(spinBox->value(), 10);
        spinBox->stepUp();
        QCOMPARE(spinBox->value(), 10);

        spinBox->setValue(4);
        auto *edit = spinBox->findChild<QLineEdit *>();
        edit->selectAll();
        QTest::keyClicks(edit, typed);
        spinBox->interpretText();
        QCOMPARE(spinBox->value(), value);
    }
}

void TestSeriesPropertiesDialog::acceptWritesEverythingIfAnythingChanged_data()
{
    QTest::addColumn<bool>("color");
    QTest::addColumn<bool>("width");
    QTest::addColumn<bool>("points");
    QTest::addColumn<bool>("size");

    for (int i = 0; i < 16; ++i) {
        const bool color = i & 1;
        const bool width = i & 2;
        const bool points = i & 4;
        const bool size = i & 8;
        QTest::addRow("changed:%s%s%s%s%s", color ? " colour" : "", width ? " width" : "",
                      points ? " points" : "", size ? " size" : "", i == 0 ? " none" : "")
            << color << width << points << size;
    }
}

void TestSeriesPropertiesDialog::acceptWritesEverythingIfAnythingChanged()
{
    QFETCH(bool, color);
    QFETCH(bool, width);
    QFETCH(bool, points);
    QFETCH(bool, size);
    const bool isChanged = color || width || points || size;
    StyledSeries series;
    series.m_pointImage = QImage(); // so that it shows whether the symbol is rendered
    Form form(&series);
    if (color) {
        form.color->setColor(PaleBlue);
    }
    if (width) {
        form.lineWidth->setValue(5);
    }
    if (points) {
        form.showPoints->setChecked(false);
    }
    if (size) {
        form.pointSize->setValue(8);
    }
    QCOMPARE(styleText(series), StyleAtFirst); // nothing before the end

    form.dialog.accept();

    QCOMPARE(form.dialog.result(), int(QDialog::Accepted));
    QCOMPARE(styleText(series), QString("%1 width %2 points %3 size %4%5")
                                    .arg(color ? "#660000ff" : "#ffff0000")
                                    .arg(width ? 5 : 3)
                                    .arg(points ? 0 : 1)
                                    .arg(size ? 8 : 6)
                                    .arg(isChanged ? " customized" : ""));
    QCOMPARE(series.m_pointImage,
             isChanged ? symbol(color ? PaleBlue : Red, size ? 8 : 6) : QImage());
}

void TestSeriesPropertiesDialog::acceptWithoutChangeLeavesCustomized_data()
{
    QTest::addColumn<bool>("customized");

    QTest::newRow("as it was made") << false;
    QTest::newRow("customized") << true;
}

void TestSeriesPropertiesDialog::acceptWithoutChangeLeavesCustomized()
{
    QFETCH(bool, customized);
    StyledSeries series;
    series.m_customized = customized;
    SeriesPropertiesDialog dialog(&series);

    dialog.accept();

    QCOMPARE(series.m_customized, customized);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void TestSeriesPropertiesDialog::alphaAloneIsAChange()
{
    StyledSeries series;
    Form form(&series);
    form.color->setColor(QColor(255, 0, 0, 254));

    form.dialog.accept();

    QCOMPARE(styleText(series), QString("#feff0000 width 3 points 1 size 6 customized"));
}

void TestSeriesPropertiesDialog::clampedValueCountsAsChange_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("shownWidth");
    QTest::addColumn<int>("shownSize");

    QTest::newRow("width above") << 15 << 6 << 10 << 6;
    QTest::newRow("width below") << 0 << 6 << 1 << 6;
    QTest::newRow("size above") << 3 << 25 << 3 << 10;
    QTest::newRow("both") << 11 << 11 << 10 << 10;
}

void TestSeriesPropertiesDialog::clampedValueCountsAsChange()
{
    QFETCH(int, width);
    QFETCH(int, size);
    QFETCH(int, shownWidth);
    QFETCH(int, shownSize);
    StyledSeries series;
    series.m_lineWidth = width;
    series.m_pointSize = size;
    Form form(&series);
    QCOMPARE(form.lineWidth->value(), shownWidth);
    QCOMPARE(form.pointSize->value(), shownSize);
    QCOMPARE(series.m_lineWidth, width);

    form.dialog.accept();

    QCOMPARE(
        styleText(series),
        QString("#ffff0000 width %1 points 1 size %2 customized").arg(shownWidth).arg(shownSize));
}

void TestSeriesPropertiesDialog::pointSizeOneKeepsSizeAndClearsSymbol()
{
    StyledSeries series;
    Form form(&series);
    form.pointSize->setValue(1);
    form.lineWidth->setValue(4);

    form.dialog.accept();

    QCOMPARE(styleText(series), QString("#ffff0000 width 4 points 1 size 6 customized"));
    QVERIFY(series.m_pointImage.isNull());

    series.updatePointImage();
    QCOMPARE(series.m_pointImage, symbol(Red, 6));
}

void TestSeriesPropertiesDialog::otherMembersStay()
{
    StyledSeries series;
    series.m_colorIndex = 4;
    series.m_selected = true;
    Form form(&series);
    form.lineWidth->setValue(4);

    form.dialog.accept();

    QCOMPARE(series.m_name, QString("a"));
    QCOMPARE(series.m_colorIndex, 4);
    QVERIFY(series.m_selected && series.m_visible);
    QCOMPARE(series.m_defaults.lineWidth, SeriesSettings::defaultLineWidth());
}

void TestSeriesPropertiesDialog::rejectWritesNothing()
{
    StyledSeries series;
    const QImage before = series.m_pointImage;
    Form form(&series);
    form.color->setColor(PaleBlue);
    form.lineWidth->setValue(5);
    form.showPoints->setChecked(false);
    form.pointSize->setValue(8);

    form.dialog.reject();

    QCOMPARE(form.dialog.result(), int(QDialog::Rejected));
    QCOMPARE(styleText(series), StyleAtFirst);
    QCOMPARE(series.m_pointImage, before);
}

void TestSeriesPropertiesDialog::acceptWithoutSeriesOnlyCloses()
{
    StyledSeries series;
    Form form(&series);
    form.lineWidth->setValue(5);
    form.dialog.m_series = nullptr;
    form.dialog.show();

    form.dialog.accept();

    QCOMPARE(form.dialog.result(), int(QDialog::Accepted));
    QVERIFY(!form.dialog.isVisible());
    QCOMPARE(styleText(series), StyleAtFirst);
}

void TestSeriesPropertiesDialog::seriesMayDieFirst()
{
    auto series = std::make_unique<StyledSeries>();
    Form form(series.get());
    form.lineWidth->setValue(5);
    form.dialog.show();
    series.reset();

    form.dialog.accept();

    QCOMPARE(form.dialog.result(), int(QDialog::Accepted));
    QVERIFY(!form.dialog.isVisible());
}

void TestSeriesPropertiesDialog::buttonsCloseTheDialog_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("result");

    QTest::newRow("OK") << int(QDialogButtonBox::Ok) << int(QDialog::Accepted);
    QTest::newRow("Cancel") << int(QDialogButtonBox::Cancel) << int(QDialog::Rejected);
}

void TestSeriesPropertiesDialog::buttonsCloseTheDialog()
{
    QFETCH(int, button);
    QFETCH(int, result);
    StyledSeries series;
    Form form(&series);
    const QSignalSpy finished(&form.dialog, SIGNAL(finished(int)));
    form.lineWidth->setValue(5);
    form.dialog.show();

    form.buttons->button(QDialogButtonBox::StandardButton(button))->click();

    QVERIFY(!form.dialog.isVisible());
    QCOMPARE(finished.size(), 1);
    QCOMPARE(form.dialog.result(), result);
    QCOMPARE(series.m_lineWidth, result == QDialog::Accepted ? 5 : 3);
}

void TestSeriesPropertiesDialog::keysCloseTheDialog_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("focus");
    QTest::addColumn<int>("result");

    for (const char *name :
         {"lineColorToolButton", "lineWidthSpinBox", "showPointsCheckBox", "pointSizeSpinBox"}) {
        QTest::addRow("Return in %s", name)
            << int(Qt::Key_Return) << QString(name) << int(QDialog::Accepted);
        QTest::addRow("Escape in %s", name)
            << int(Qt::Key_Escape) << QString(name) << int(QDialog::Rejected);
    }
}

void TestSeriesPropertiesDialog::keysCloseTheDialog()
{
    QFETCH(int, key);
    QFETCH(QString, focus);
    QFETCH(int, result);
    StyledSeries series;
    Form form(&series);
    form.pointSize->setValue(8);
    form.dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&form.dialog));
    auto *widget = form.dialog.findChild<QWidget *>(focus);
    widget->setFocus();

    QTest::keyClick(widget, Qt::Key(key));

    QVERIFY(!form.dialog.isVisible());
    QCOMPARE(form.dialog.result(), result);
    QCOMPARE(series.m_pointSize, result == QDialog::Accepted ? 8 : 6);
}

QTEST_MAIN(TestSeriesPropertiesDialog)
#include "tst_seriespropertiesdialog.moc"
