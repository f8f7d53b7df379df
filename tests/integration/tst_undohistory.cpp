#include "support/modelsetup.h"
#include "undo/scalecommand.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QtTest>
#include <QUndoStack>

#include <algorithm>
#include <memory>

namespace {

// The chart once more, of texts and numbers only: what its rows, axes and history are after each
// step, told as plainly as possible. Series are known by their names.

struct PlainAxis
{
    bool operator==(const PlainAxis &other) const
    {
        return min == other.min && max == other.max && zoomed == other.zoomed;
    }
    bool operator!=(const PlainAxis &other) const { return !(*this == other); }

    void set(double a, double b)
    {
        min = qMin(a, b);
        max = qMax(a, b);
    }

    QString text() const
    {
        return QString("[%1,%2]%3")
            .arg(min, 0, 'g', 12)
            .arg(max, 0, 'g', 12)
            .arg(zoomed ? QString(" zoomed") : QString());
    }

    double min = 0.0;
    double max = 0.0;
    bool zoomed = false;
};

struct PlainState
{
    bool operator==(const PlainState &other) const { return x == other.x && y == other.y; }

    QString text() const
    {
        QStringList texts{x.text()};
        for (const PlainAxis &axis : y) {
            texts.append(axis.text());
        }
        return texts.join(' ');
    }

    PlainAxis x;
    QVector<PlainAxis> y; ///< By row.
};

struct PlainSeriesState
{
    QVector<QPointF> samples;
    double minimumY = 0.0;
    double maximumY = 0.0;
    PlainAxis axis;
    bool autoScale = false;
    bool wasAdded = false;
};

struct PlainCommand
{
    enum Type { Remove = 1, Add = 2, Scale = 3 };

    Type type = Scale;
    PlainState before;
    PlainState after;
    QMap<int, QString> removed; ///< By row.
    QStringList added;
    QStringList owned; ///< Series that die with the command.
    int colorIndex = -1;
    bool takesAll = false;
};

class PlainChart
{
public:
    // What an application and its user do

    void add(const QStringList &names)
    {
        PlainCommand command = newCommand(PlainCommand::Add);
        command.added = names.mid(0, 10);
        for (int row = 0; rows.size() - row + command.added.size() > 10; ++row) {
            command.removed.insert(row, rows.at(row));
        }
        push(command);
    }

    void remove(int row)
    {
        PlainCommand command = newCommand(PlainCommand::Remove);
        command.removed.insert(row, rows.at(row));
        push(command);
    }

    void removeAll()
    {
        PlainCommand command = newCommand(PlainCommand::Remove);
        for (int row = 0; row < rows.size(); ++row) {
            command.removed.insert(row, rows.at(row));
        }
        command.takesAll = true;
        push(command);
    }

    void undo()
    {
        if (index == 0) {
            return;
        }
        PlainCommand &command = history[--index];
        if (!command.removed.isEmpty()) {
            restore(command);
        }
        for (const QString &name : qAsConst(command.added)) {
            takeOut(name);
        }
        command.owned = command.added;
        apply(command.before);
    }

    void redo()
    {
        if (index == history.size()) {
            return;
        }
        PlainCommand &command = history[index++];
        change(command);
        apply(command.after);
    }

    /// To be followed by changes of the axes and push().
    PlainCommand newCommand(PlainCommand::Type type) const
    {
        PlainCommand command;
        command.type = type;
        command.before = state();
        command.colorIndex = colorIndex;
        return command;
    }

    void push(PlainCommand command)
    {
        change(command);
        command.after = state();
        while (history.size() > index) {
            discard(history.takeLast());
        }
        const bool merges = index > 0 && command.type == PlainCommand::Scale &&
                            history.last().after == command.after;
        if (merges) {
            return;
        }
        history.append(command);
        ++index;
        if (history.size() > 20) {
            discard(history.takeFirst());
            --index;
        }
    }

    void enter(const QString &name, const QVector<QPointF> &samples)
    {
        series[name].samples += samples;
        followData(name);
    }

    void clear(const QString &name)
    {
        series[name].samples.clear();
        followData(name);
    }

    void applySettings()
    {
        for (const QString &name : qAsConst(rows)) {
            series[name].autoScale = autoScaleY;
        }
        followData(QString());
    }

    void undoZoom()
    {
        for (const QString &name : qAsConst(rows)) {
            series[name].axis.zoomed = false;
            adjustY(name);
        }
        x.zoomed = false;
        adjustX();
    }

    // What is to be seen

    PlainState state() const
    {
        PlainState now;
        now.x = x;
        for (const QString &name : rows) {
            now.y.append(series[name].axis);
        }
        return now;
    }

    QString text() const
    {
        QStringList lines{"rows " + rows.join(' '), "axes " + state().text(),
                          QString("color %1, index %2").arg(colorIndex).arg(index)};
        for (int i = 0; i < history.size(); ++i) {
            const PlainCommand &command = history.at(i);
            lines.append(QString("%1 %2").arg(i).arg(int(command.type)));
            if (isNextToIndex(i, index)) {
                lines.append(command.before.text() + " -> " + command.after.text());
            }
        }
        lines.append("dead " + dead.join(' '));
        return lines.join('\n');
    }

    /// Whether a step or data may have changed the command at \p i; the others rest.
    static bool isNextToIndex(int i, int index) { return i == index || i == index - 1; }

    QStringList rows;
    QMap<QString, PlainSeriesState> series; ///< All that ever were.
    QStringList dead;                       ///< In alphabetical order.
    PlainAxis x;
    bool individualScale = true;
    bool autoScaleY = false;

private:
    void change(PlainCommand &command)
    {
        if (command.takesAll) {
            rows.clear();
            adjust(QString());
        } else {
            for (const QString &name : qAsConst(command.removed)) {
                takeOut(name);
            }
        }
        for (const QString &name : qAsConst(command.added)) {
            putIn(name);
        }
        command.owned = command.removed.values();
    }

    void putIn(const QString &name)
    {
        PlainSeriesState &one = series[name];
        if (!one.wasAdded) {
            one.wasAdded = true;
            one.autoScale = autoScaleY;
            colorIndex = rows.isEmpty() || colorIndex > 9 ? 0 : colorIndex + 1;
        }
        rows.append(name);
        adjust(QString());
        joinZoom(name);
    }

    void takeOut(const QString &name)
    {
        rows.removeAll(name);
        adjust(QString());
    }

    void restore(const PlainCommand &command)
    {
        for (auto it = command.removed.cbegin(); it != command.removed.cend(); ++it) {
            rows.insert(it.key(), it.value());
            adjust(QString());
            joinZoom(it.value());
        }
        colorIndex = command.colorIndex;
    }

    void discard(const PlainCommand &command)
    {
        dead += command.owned;
        dead.sort();
    }

    void apply(const PlainState &saved)
    {
        x = saved.x;
        for (int row = 0; row < rows.size(); ++row) {
            series[rows.at(row)].axis = saved.y.at(row);
        }
    }

    /// The data may have moved an axis; then the commands on both sides of the index follow.
    void followData(const QString &name)
    {
        const PlainState before = state();
        adjust(name);
        if (state() == before || index == 0) {
            return;
        }
        history[index - 1].after = state();
        if (index < history.size()) {
            history[index].before = state();
        }
    }

    void adjust(const QString &name)
    {
        adjustY(name);
        adjustX();
    }

    void adjustY(const QString &name)
    {
        const bool one = !name.isEmpty() && individualScale;
        const QStringList names = one ? QStringList{name} : rows;
        for (const QString &concerned : names) {
            PlainAxis &axis = series[concerned].axis;
            if (!axis.zoomed) {
                const QPair<double, double> range = scale(concerned);
                axis.set(range.first, range.second);
            }
        }
    }

    void adjustX()
    {
        if (x.zoomed) {
            return;
        }
        QVector<double> firsts;
        QVector<double> lasts;
        for (const QString &name : qAsConst(rows)) {
            const QVector<QPointF> &samples = series[name].samples;
            if (!samples.isEmpty()) {
                firsts.append(samples.first().x());
                lasts.append(samples.last().x());
            }
        }
        if (firsts.isEmpty()) {
            x.set(0.0, 0.0);
            return;
        }
        x.set(*std::min_element(firsts.cbegin(), firsts.cend()),
              *std::max_element(lasts.cbegin(), lasts.cend()));
    }

    static void addExtremes(QVector<double> &ys, const QVector<QPointF> &samples)
    {
        for (const QPointF &sample : samples) {
            ys.append(sample.y());
        }
        if (samples.isEmpty()) {
            ys.append(0.0);
        }
    }

    QPair<double, double> scale(const QString &name) const
    {
        QVector<double> ys;
        bool hasSamples = individualScale;
        if (!individualScale) {
            for (const QString &one : rows) {
                addExtremes(ys, series[one].samples);
                hasSamples = hasSamples || !series[one].samples.isEmpty();
            }
        } else if (series[name].autoScale) {
            addExtremes(ys, series[name].samples);
        } else {
            return widened(series[name].minimumY, series[name].maximumY);
        }
        if (!hasSamples) {
            return {-0.5, 0.5};
        }
        std::sort(ys.begin(), ys.end());
        return widened(ys.first(), ys.last());
    }

    static QPair<double, double> widened(double low, double high)
    {
        if (low != high) {
            return {low, high};
        }
        return {low == 0.0 ? -0.5 : low * 0.5, high == 0.0 ? 0.5 : high * 1.5};
    }

    void joinZoom(const QString &name)
    {
        QString first;
        for (const QString &one : qAsConst(rows)) {
            if (first.isEmpty() && !series[one].samples.isEmpty()) {
                first = one;
            }
        }
        if (first.isEmpty()) {
            return;
        }
        const PlainAxis shown = series[first].axis;
        if (!shown.zoomed || shown.max - shown.min == 0.0) {
            return;
        }
        if (autoScaleY) {
            undoZoom();
            return;
        }
        const QPair<double, double> of = scale(first);
        const QPair<double, double> own = scale(name);
        const double ofSpan = of.second - of.first;
        const double ownSpan = own.second - own.first;
        const double low = own.first - (of.first - shown.min) * ownSpan / ofSpan;
        const double high = ownSpan / (ofSpan / (shown.max - shown.min)) + low;
        series[name].axis.set(low, high);
        series[name].axis.zoomed = true;
    }

    int colorIndex = 0;
    int index = 0;
    QVector<PlainCommand> history;
};

/// Takes a chart and its plain twin through the same random steps.
class Walk
{
public:
    explicit Walk(quint32 seed)
        : m_random(seed)
        , m_model(std::make_unique<OpenModel>())
        , m_tester(m_model.get())
    {
    }

    /// Takes one step; returns its description.
    QString step()
    {
        struct Choice
        {
            int weight;
            QString (Walk::*step)();
        };
        static const Choice choices[] = {
            {12, &Walk::add},      {8, &Walk::remove},     {1, &Walk::removeAll},
            {20, &Walk::enter},    {3, &Walk::clear},      {14, &Walk::pushStep},
            {18, &Walk::undo},     {14, &Walk::redo},      {2, &Walk::undoZoom},
            {3, &Walk::configure}, {2, &Walk::switchMode}, {3, &Walk::handleEvents},
        };
        int sum = 0;
        for (const Choice &choice : choices) {
            sum += choice.weight;
        }
        int ticket = m_random.bounded(sum);
        const Choice *choice = choices;
        while (ticket >= choice->weight) {
            ticket -= choice->weight;
            ++choice;
        }
        return (this->*choice->step)();
    }

    QString expectedText() const { return m_plain.text(); }

    /// The chart in the words of its twin.
    QString text() const
    {
        const QUndoStack &stack = *m_model->m_undoStack;
        QStringList lines{
            "rows " + rowsText(*m_model), "axes " + axesText(*m_model),
            QString("color %1, index %2").arg(m_model->m_colorIndex).arg(stack.index())};
        for (int i = 0; i < stack.count(); ++i) {
            const auto &command = dynamic_cast<const ScaleCommand &>(*stack.command(i));
            lines.append(QString("%1 %2").arg(i).arg(command.type()));
            if (PlainChart::isNextToIndex(i, stack.index())) {
                lines.append(stateText(command.m_oldParamsX, command.m_oldParamsY) + " -> " +
                             stateText(command.m_newParamsX, command.m_newParamsY));
            }
        }
        lines.append("dead " + deadText());
        return lines.join('\n');
    }

    /// What is wrong with the panes, or nothing.
    QString paneFault() const
    {
        const bool isSingle = m_model->m_chartMode == AbstractChartModel::SingleMode;
        if (m_model->m_charts.isEmpty() || (isSingle && m_model->m_charts.size() > 1)) {
            return QString("%1 panes").arg(m_model->m_charts.size());
        }
        for (const AbstractChartSeries *series : qAsConst(m_model->m_series)) {
            if (!m_model->m_charts.contains(series->m_chart)) {
                return series->m_name + " has no pane";
            }
        }
        return m_model->hasEmptyCharts() ? QString("an empty pane is left") : QString();
    }

    void finish() { m_model.reset(); }

    /// The names of all series ever made, in alphabetical order.
    QString allText() const { return QStringList(m_deaths.keys()).join(' '); }

    /// The names of those that died, in alphabetical order.
    QString deadText() const
    {
        QStringList dead;
        for (auto it = m_deaths.cbegin(); it != m_deaths.cend(); ++it) {
            for (int i = 0; i < it.value(); ++i) {
                dead.append(it.key());
            }
        }
        return dead.join(' ');
    }

private:
    static QString stateText(const UndoAxisParams &x, const QMap<int, UndoAxisParams> &y)
    {
        QStringList texts{recordText(x)};
        for (auto it = y.cbegin(); it != y.cend(); ++it) {
            texts.append(recordText(it.value()));
        }
        return texts.join(' ');
    }

    static QString recordText(const UndoAxisParams &params)
    {
        PlainAxis axis;
        axis.min = params.min;
        axis.max = params.max;
        axis.zoomed = params.zoomed;
        return params.valid ? axis.text() : QString("none");
    }

    int anyRow() { return m_random.bounded(m_model->m_series.size()); }

    double anyNumber() { return m_random.bounded(-5, 6); }

    QString add()
    {
        const int count = m_random.bounded(8) == 0 ? m_random.bounded(1, 11) : 1;
        QStringList names;
        QList<AbstractChartSeries *> all;
        for (int i = 0; i < count; ++i) {
            const QString name = QString("s%1").arg(m_made++, 5, 10, QChar('0'));
            auto *series = new PlainSeries(name);
            series->m_minimumY = anyNumber();
            series->m_maximumY = anyNumber();
            series->m_deaths = &m_deaths[name];
            PlainSeriesState &plain = m_plain.series[name];
            plain.minimumY = series->m_minimumY;
            plain.maximumY = series->m_maximumY;
            m_series.insert(name, series);
            names.append(name);
            all.append(series);
        }
        m_model->addSeries(all);
        m_plain.add(names);
        return "add " + names.join(' ');
    }

    QString remove()
    {
        if (m_model->m_series.isEmpty()) {
            return "remove none";
        }
        const int row = anyRow();
        m_model->removeSeries(m_model->m_series.at(row));
        m_plain.remove(row);
        return QString("remove row %1").arg(row);
    }

    QString removeAll()
    {
        if (!m_model->m_series.isEmpty()) {
            m_plain.removeAll();
        }
        m_model->removeAllSeries();
        return "remove all";
    }

    /// A series that lives, at times one that only the history has.
    QString anyLivingName()
    {
        QStringList living;
        for (const QString &name : m_series.keys()) {
            if (m_deaths.value(name) == 0) {
                living.append(name);
            }
        }
        const bool fromModel = m_random.bounded(5) > 0 && !m_plain.rows.isEmpty();
        const QStringList &names = fromModel ? m_plain.rows : living;
        return names.isEmpty() ? QString() : names.at(m_random.bounded(names.size()));
    }

    QString enter()
    {
        const QString name = anyLivingName();
        if (name.isEmpty()) {
            return "enter nowhere";
        }
        QVector<QPointF> samples;
        QList<ChartValue *> values;
        const int count = m_random.bounded(1, 4);
        for (int i = 0; i < count; ++i) {
            samples.append(QPointF(m_random.bounded(-20, 21), anyNumber()));
            values.append(newValue(samples.last().x(), samples.last().y()));
        }
        if (count == 1) {
            m_model->addValue(m_series.value(name), values.first());
        } else {
            m_model->addValues(m_series.value(name), values);
        }
        m_plain.enter(name, samples);
        return QString("enter %1 samples into %2").arg(count).arg(name);
    }

    QString clear()
    {
        const QString name = anyLivingName();
        if (name.isEmpty()) {
            return "clear nowhere";
        }
        m_model->clearValues(m_series.value(name));
        m_plain.clear(name);
        return "clear " + name;
    }

    /// A step of the user: some axes change by hand, or none, which is to be merged.
    QString pushStep()
    {
        auto *command = new ScaleCommand(m_model.get());
        PlainCommand plain = m_plain.newCommand(PlainCommand::Scale);
        QString changed;
        if (m_random.bounded(2) == 0) {
            zoom(*m_model->m_axisX, m_plain.x);
            changed += " X";
        }
        if (m_random.bounded(2) == 0 && !m_model->m_series.isEmpty()) {
            const int row = anyRow();
            zoom(*m_model->m_series.at(row)->m_axisY, m_plain.series[m_plain.rows.at(row)].axis);
            changed += QString(" row %1").arg(row);
        }
        m_model->m_undoStack->push(command);
        m_plain.push(plain);
        return "step on" + changed;
    }

    void zoom(ChartAxis &axis, PlainAxis &plain)
    {
        const double a = anyNumber();
        const double b = anyNumber();
        axis.assignRange(a, b);
        axis.m_zoomed = true;
        plain.set(a, b);
        plain.zoomed = true;
    }

    QString undo()
    {
        m_model->m_undoStack->undo();
        m_plain.undo();
        return "undo";
    }

    QString redo()
    {
        m_model->m_undoStack->redo();
        m_plain.redo();
        return "redo";
    }

    QString undoZoom()
    {
        m_model->undoZoom();
        m_plain.undoZoom();
        return "undo zoom";
    }

    QString configure()
    {
        m_plain.individualScale = m_random.bounded(2) == 0;
        m_plain.autoScaleY = m_random.bounded(2) == 0;
        m_model->m_settings.individualScale = m_plain.individualScale;
        m_model->m_settings.autoScaleY = m_plain.autoScaleY;
        m_model->applyChartSettings();
        m_plain.applySettings();
        return QString("individual scale %1, auto scale %2")
            .arg(m_plain.individualScale)
            .arg(m_plain.autoScaleY);
    }

    QString switchMode()
    {
        if (m_model->m_chartMode == AbstractChartModel::SingleMode) {
            m_model->slotMultiMode();
        } else {
            m_model->slotSingleMode();
        }
        return "switch mode";
    }

    /// Lets calculations end and others start.
    QString handleEvents()
    {
        QCoreApplication::processEvents();
        return "handle events";
    }

    QRandomGenerator m_random;
    PlainChart m_plain;
    QMap<QString, int> m_deaths;
    QMap<QString, AbstractChartSeries *> m_series; ///< The dead ones too.
    int m_made = 0;
    std::unique_ptr<OpenModel> m_model;
    QAbstractItemModelTester m_tester;
};

} // namespace

class TestUndoHistory : public QObject
{
    Q_OBJECT

private slots:
    void walksWithItsPlainTwin_data();
    void walksWithItsPlainTwin();
};

void TestUndoHistory::walksWithItsPlainTwin_data()
{
    QTest::addColumn<quint32>("seed");

    for (quint32 seed = 1; seed <= 6; ++seed) {
        QTest::addRow("seed %u", seed) << seed;
    }
}

void TestUndoHistory::walksWithItsPlainTwin()
{
    constexpr int Steps = 1000;
    QFETCH(quint32, seed);
    Walk walk(seed);
    for (int i = 0; i < Steps; ++i) {
        const QString step = walk.step();

        const QString text = walk.text();
        const QString expected = walk.expectedText();
        QVERIFY2(text == expected, qPrintable(QString("step %1, %2, gives\n%3\nand not\n%4")
                                                  .arg(QString::number(i), step, text, expected)));
        const QString fault = walk.paneFault();
        QVERIFY2(fault.isEmpty(), qPrintable(QString("step %1, %2: %3").arg(i).arg(step, fault)));
    }
    walk.finish();

    QCOMPARE(walk.deadText(), walk.allText());
}

QTEST_MAIN(TestUndoHistory)
#include "tst_undohistory.moc"
