#include "editors/seriesdelegate.h"

#include "editors/serieseditor.h"
#include "support/metatext.h"
#include "support/modelsetup.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QStandardItemModel>
#include <QtTest>

#include <memory>

namespace {

const QColor Red(255, 0, 0);
const QColor Blue(0, 0, 255);
const QRect Cell(3, 5, 90, 24); // off the corner, and with odd margins around a logo

/// A legend of one row that answers as the test wants.
class LooseTable : public QAbstractTableModel
{
public:
    int rowCount(const QModelIndex & = QModelIndex()) const override { return 1; }
    int columnCount(const QModelIndex & = QModelIndex()) const override { return 2; }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role == Qt::UserRole) {
            return m_series;
        }
        if (role == Qt::ForegroundRole) {
            return m_foreground;
        }
        return role == Qt::DisplayRole && index.column() == 1 ? QVariant("name") : QVariant();
    }

    QVariant m_series;
    QVariant m_foreground;
};

/// Writes down how the texts of cells are to be drawn.
class CapturingDelegate : public SeriesDelegate
{
public:
    mutable QStringList m_texts;
    mutable QStyleOptionViewItem m_option; ///< Of the last text.

protected:
    void drawDisplay(QPainter *, const QStyleOptionViewItem &option, const QRect &,
                     const QString &text) const override
    {
        m_texts.append(text);
        m_option = option;
    }
};

/// The one way of item delegates, by numbers that no style changes.
QStyleOptionViewItem cellOption(bool selected)
{
    QStyleOptionViewItem option;
    option.rect = Cell;
    option.state = QStyle::State_Enabled | QStyle::State_Active;
    option.state.setFlag(QStyle::State_Selected, selected);
    option.showDecorationSelected = true;
    option.palette = QPalette(Qt::gray, Qt::darkGray);
    option.palette.setColor(QPalette::Highlight, Qt::darkGreen);
    option.font = QApplication::font();
    option.displayAlignment = Qt::AlignLeft | Qt::AlignVCenter;
    return option;
}

QImage blankImage()
{
    QImage image(100, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::yellow);
    return image;
}

QImage painted(const QAbstractItemDelegate &delegate, const QStyleOptionViewItem &option,
               const QModelIndex &index)
{
    QImage image = blankImage();
    QPainter painter(&image);
    delegate.paint(&painter, option, index);
    return image;
}

/// The colours of all groups and both roles of text, where they are one and the same; else invalid.
QColor textColor(const QPalette &palette)
{
    const QBrush brush = palette.brush(QPalette::Active, QPalette::Text);
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        for (const auto role : {QPalette::Text, QPalette::HighlightedText}) {
            if (palette.brush(group, role) != brush) {
                return QColor();
            }
        }
    }
    return brush.style() == Qt::SolidPattern ? brush.color() : QColor();
}

/// A row of a model with a red series.
struct Legend
{
    Legend()
    {
        series->m_color = Red;
        series->m_lineWidth = 3;
        model.updateCharts();
    }

    QModelIndex sample() const { return model.index(0, 0); }
    QModelIndex name() const { return model.index(0, 1); }

    OpenModel model;
    PlainSeries *series = addSeries(model, "name");
};

} // namespace

class TestSeriesDelegate : public QObject
{
    Q_OBJECT

private slots:
    void addsNothingToTheMetaObject();
    void paintsNothingWithoutSeries_data();
    void paintsNothingWithoutSeries();
    void nameHasTheColorOfItsSeries_data();
    void nameHasTheColorOfItsSeries();
    void customizedSeriesIsBold_data();
    void customizedSeriesIsBold();
    void foregroundThatIsNoColorGivesWay_data();
    void foregroundThatIsNoColorGivesWay();
    void foregroundColorOfTheModelWins();
    void paintsLikePlainWay_data();
    void paintsLikePlainWay();
    void leavesTheOptionAlone();
    void sizeHintIsFourPixelsMore_data();
    void sizeHintIsFourPixelsMore();
    void createsEditorForTheSampleOnly();
    void createsEditorForRowWithoutSeries();
    void changeOfEditorIsCommitted();
    void handsSeriesToTheEditor();
    void columnOfNamesHandsNothing();
    void rowWithoutSeriesLeavesFormerOne();
    void commitUpdatesTheModel();
    void commitPassesNoModelAndForeignModel();
};

void TestSeriesDelegate::addsNothingToTheMetaObject()
{
    QObject parent;
    const auto *delegate = new SeriesDelegate(&parent);

    QCOMPARE(delegate->parent(), &parent);
    QCOMPARE(ownMethodsText(SeriesDelegate::staticMetaObject), QString());
}

void TestSeriesDelegate::paintsNothingWithoutSeries_data()
{
    QTest::addColumn<QVariant>("series");
    QTest::addColumn<bool>("selected");

    for (const bool selected : {false, true}) {
        const char *state = selected ? "selected" : "plain";
        QTest::addRow("none, %s", state) << QVariant() << selected;
        QTest::addRow("null, %s", state)
            << QVariant::fromValue<AbstractChartSeries *>(nullptr) << selected;
        QTest::addRow("something else, %s", state) << QVariant("text") << selected;
        QTest::addRow("another object, %s", state)
            << QVariant::fromValue<QObject *>(this) << selected;
    }
}

void TestSeriesDelegate::paintsNothingWithoutSeries()
{
    QFETCH(QVariant, series);
    QFETCH(bool, selected);
    LooseTable table;
    table.m_series = series;
    table.m_foreground = Red;
    const SeriesDelegate delegate;

    for (const int column : {0, 1}) {
        QCOMPARE(painted(delegate, cellOption(selected), table.index(0, column)), blankImage());
    }
    QCOMPARE(painted(delegate, cellOption(selected), QModelIndex()), blankImage());
}

void TestSeriesDelegate::nameHasTheColorOfItsSeries_data()
{
    QTest::addColumn<bool>("selected");

    QTest::newRow("plain") << false;
    QTest::newRow("selected") << true;
}

void TestSeriesDelegate::nameHasTheColorOfItsSeries()
{
    QFETCH(bool, selected);
    const Legend legend;
    const CapturingDelegate delegate;

    painted(delegate, cellOption(selected), legend.name());

    QCOMPARE(delegate.m_texts.join('|'), QString("name"));
    QCOMPARE(textColor(delegate.m_option.palette), Red);
    QCOMPARE(delegate.m_option.state.testFlag(QStyle::State_Selected), selected);
}

void TestSeriesDelegate::customizedSeriesIsBold_data()
{
    QTest::addColumn<int>("column");

    QTest::newRow("sample") << 0;
    QTest::newRow("name") << 1;
}

void TestSeriesDelegate::customizedSeriesIsBold()
{
    QFETCH(int, column);
    const Legend legend;
    const QModelIndex index = legend.model.index(0, column);
    const CapturingDelegate delegate;
    QStyleOptionViewItem option = cellOption(false);
    option.font.setWeight(QFont::Light); // what comes in does not count

    legend.series->m_customized = true;
    painted(delegate, option, index);
    QCOMPARE(delegate.m_option.font.weight(), 75);

    legend.series->restoreDefault();
    option.font.setWeight(QFont::Black);
    painted(delegate, option, index);
    QCOMPARE(delegate.m_option.font.weight(), 50);
    QCOMPARE(delegate.m_texts.size(), 2);
}

void TestSeriesDelegate::foregroundThatIsNoColorGivesWay_data()
{
    QTest::addColumn<QVariant>("foreground");

    QTest::newRow("none") << QVariant();
    QTest::newRow("text that names a colour") << QVariant("blue");
    QTest::newRow("number") << QVariant(7);
}

void TestSeriesDelegate::foregroundThatIsNoColorGivesWay()
{
    QFETCH(QVariant, foreground);
    PlainSeries series;
    series.m_color = Red;
    LooseTable table;
    table.m_series = QVariant::fromValue<AbstractChartSeries *>(&series);
    table.m_foreground = foreground;
    const CapturingDelegate delegate;

    painted(delegate, cellOption(true), table.index(0, 1));

    QCOMPARE(textColor(delegate.m_option.palette), Red);
}

void TestSeriesDelegate::foregroundColorOfTheModelWins()
{
    PlainSeries series;
    series.m_color = Red;
    LooseTable table;
    table.m_series = QVariant::fromValue<AbstractChartSeries *>(&series);
    table.m_foreground = Blue;
    const CapturingDelegate delegate;

    painted(delegate, cellOption(true), table.index(0, 1));

    QCOMPARE(textColor(delegate.m_option.palette), Blue);
}

void TestSeriesDelegate::paintsLikePlainWay_data()
{
    QTest::addColumn<bool>("selected");
    QTest::addColumn<bool>("customized");
    QTest::addColumn<bool>("points");

    for (int i = 0; i < 8; ++i) {
        QTest::addRow("%s%s%s", i & 1 ? "selected" : "plain", i & 2 ? ", customized" : "",
                      i & 4 ? ", points" : "")
            << bool(i & 1) << bool(i & 2) << bool(i & 4);
    }
}

void TestSeriesDelegate::paintsLikePlainWay()
{
    QFETCH(bool, selected);
    QFETCH(bool, customized);
    QFETCH(bool, points);
    const Legend legend;
    legend.series->m_customized = customized;
    legend.series->m_pointsVisible = points;
    const QStyleOptionViewItem option = cellOption(selected);
    QStyleOptionViewItem colored = option;
    colored.palette.setColor(QPalette::Text, Red);
    colored.palette.setColor(QPalette::HighlightedText, Red);
    colored.font.setWeight(customized ? QFont::Bold : QFont::Normal);
    const QItemDelegate plain;

    QImage sample = painted(plain, colored, legend.sample());
    QPainter painter(&sample);
    legend.series->paintLogo(&painter, Cell);
    painter.end();

    const SeriesDelegate delegate;
    QCOMPARE(painted(delegate, option, legend.sample()), sample);
    QCOMPARE(painted(delegate, option, legend.name()), painted(plain, colored, legend.name()));
    // The line of the sample lies on the highlight.
    QCOMPARE(sample.pixelColor(Cell.center()), Red);
}

void TestSeriesDelegate::leavesTheOptionAlone()
{
    const Legend legend;
    legend.series->m_customized = true;
    const QStyleOptionViewItem option = cellOption(true);

    painted(SeriesDelegate(), option, legend.name());

    QCOMPARE(option.palette, cellOption(true).palette);
    QCOMPARE(option.font, cellOption(true).font);
}

void TestSeriesDelegate::sizeHintIsFourPixelsMore_data()
{
    QTest::addColumn<int>("column");

    QTest::newRow("sample") << 0;
    QTest::newRow("name") << 1;
}

void TestSeriesDelegate::sizeHintIsFourPixelsMore()
{
    QFETCH(int, column);
    const Legend legend;
    const QModelIndex index = legend.model.index(0, column);
    const QStyleOptionViewItem option = cellOption(false);
    const QSize plain = QItemDelegate().sizeHint(option, index);

    QCOMPARE(SeriesDelegate().sizeHint(option, index),
             QSize(plain.width() + 4, plain.height() + 4));
}

void TestSeriesDelegate::createsEditorForTheSampleOnly()
{
    const Legend legend;
    QWidget parent;
    const SeriesDelegate delegate;
    const QStyleOptionViewItem option;

    QVERIFY(!delegate.createEditor(&parent, option, legend.name()));
    QVERIFY(!delegate.createEditor(&parent, option, QModelIndex()));
    QVERIFY(parent.children().isEmpty());

    const QWidget *editor = delegate.createEditor(&parent, option, legend.sample());
    QVERIFY(qobject_cast<const SeriesEditor *>(editor));
    QCOMPARE(editor->parentWidget(), &parent);
}

void TestSeriesDelegate::createsEditorForRowWithoutSeries()
{
    const LooseTable table;
    QWidget parent;
    const SeriesDelegate delegate;

    QWidget *widget = delegate.createEditor(&parent, QStyleOptionViewItem(), table.index(0, 0));
    delegate.setEditorData(widget, table.index(0, 0));

    const auto *editor = qobject_cast<SeriesEditor *>(widget);
    QVERIFY(editor);
    QVERIFY(!editor->m_series);
}

void TestSeriesDelegate::changeOfEditorIsCommitted()
{
    const Legend legend;
    QWidget parent;
    const SeriesDelegate delegate;
    QSignalSpy commits(&delegate, SIGNAL(commitData(QWidget *)));
    int closings = 0;
    connect(&delegate, &QAbstractItemDelegate::closeEditor, this, [&] { ++closings; });
    auto *editor = qobject_cast<SeriesEditor *>(
        delegate.createEditor(&parent, QStyleOptionViewItem(), legend.sample()));
    QVERIFY(editor);

    emit editor->changed(editor);

    QCOMPARE(commits.size(), 1);
    QCOMPARE(commits.constFirst().constFirst().value<QWidget *>(), editor);
    QCOMPARE(closings, 0);
}

void TestSeriesDelegate::handsSeriesToTheEditor()
{
    const Legend legend;
    const SeriesDelegate delegate;
    SeriesEditor editor;
    QWidget foreign;

    delegate.setEditorData(&editor, legend.sample());
    delegate.setEditorData(&foreign, legend.sample());

    QCOMPARE(editor.m_series, legend.series);
}

void TestSeriesDelegate::columnOfNamesHandsNothing()
{
    const Legend legend;
    SeriesEditor editor;

    SeriesDelegate().setEditorData(&editor, legend.name());

    QVERIFY(!editor.m_series);
}

void TestSeriesDelegate::rowWithoutSeriesLeavesFormerOne()
{
    const Legend legend;
    const LooseTable table;
    const SeriesDelegate delegate;
    SeriesEditor editor;
    delegate.setEditorData(&editor, legend.sample());

    delegate.setEditorData(&editor, table.index(0, 0));

    QCOMPARE(editor.m_series, legend.series);
}

void TestSeriesDelegate::commitUpdatesTheModel()
{
    Legend legend;
    QVERIFY(settled(legend.model));
    QSignalSpy changes(&legend.model, SIGNAL(dataChanged(QModelIndex, QModelIndex, QVector<int>)));

    SeriesDelegate().setModelData(nullptr, &legend.model, QModelIndex());

    QCOMPARE(changes.size(), 1);
    QVERIFY(!changes.constFirst().at(0).toModelIndex().isValid());
    QVERIFY(!changes.constFirst().at(1).toModelIndex().isValid());
    QVERIFY(legend.model.updatePointsInProgress()); // the charts follow
    QVERIFY(settled(legend.model));
    QCOMPARE(changes.size(), 1);
}

void TestSeriesDelegate::commitPassesNoModelAndForeignModel()
{
    QStandardItemModel foreign(1, 2);
    const QSignalSpy changes(&foreign, SIGNAL(dataChanged(QModelIndex, QModelIndex, QVector<int>)));
    SeriesEditor editor;
    const SeriesDelegate delegate;

    delegate.setModelData(&editor, nullptr, foreign.index(0, 0));
    delegate.setModelData(&editor, &foreign, foreign.index(0, 0));

    QCOMPARE(changes.size(), 0);
}

QTEST_MAIN(TestSeriesDelegate)
#include "tst_seriesdelegate.moc"
