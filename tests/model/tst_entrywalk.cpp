#include "integration/plainchart.h"
#include "support/modelsetup.h"
#include "support/opendynamicmodel.h"
#include "undo/scalecommand.h"

#include <QRandomGenerator>
#include <QtTest>
#include <QUndoStack>

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>
#include <thread>

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

struct PlainRow
{
    QVector<QPointF> samples; ///< In the order of entry.
    double minimumY = 0.0;
    double maximumY = 0.0;
    PlainAxis axis;
};

struct PlainStep
{
    PlainState before;
    PlainState after;
};

/// What the entry of samples does with axes and history, once more and step by step: nothing is
/// kept from one sample to the next but what the user can see.
struct PlainEntry
{
    void enter(int row, const QVector<QPointF> &samples)
    {
        rows[row].samples += samples;
        follow(row);
    }

    void clear(int row)
    {
        rows[row].samples.clear();
        follow(row);
    }

    void follow(int row)
    {
        const PlainState before = state();
        adjustY(row);
        adjustX();
        if (state() == before || index == 0) {
            return;
        }
        history[index - 1].after = state();
        if (index < history.size()) {
            history[index].before = state();
        }
    }

    void push(const PlainState &before)
    {
        const PlainStep step{before, state()};
        history.resize(index);
        if (index > 0 && history.last().after == step.after) {
            return;
        }
        history.append(step);
        if (history.size() > 20) {
            history.removeFirst();
        }
        index = history.size();
    }

    void apply(const PlainState &saved)
    {
        x = saved.x;
        for (int row = 0; row < rows.size(); ++row) {
            rows[row].axis = saved.y.at(row);
        }
    }

    PlainState state() const
    {
        PlainState now;
        now.x = x;
        for (const PlainRow &row : rows) {
            now.y.append(row.axis);
        }
        return now;
    }

    void adjustY(int one)
    {
        for (int row = 0; row < rows.size(); ++row) {
            const bool concerned = row == one || !individualScale;
            if (concerned && !rows[row].axis.zoomed) {
                const QPair<double, double> range = individualScale ? ownScale(row) : commonScale();
                rows[row].axis.set(range.first, range.second);
            }
        }
    }

    static QVector<double> validYs(const PlainRow &row)
    {
        QVector<double> ys;
        for (const QPointF &sample : row.samples) {
            if (qIsFinite(sample.x()) && qIsFinite(sample.y())) {
                ys.append(sample.y());
            }
        }
        if (ys.isEmpty()) {
            ys.append(0.0);
        }
        return ys;
    }

    static QPair<double, double> extent(QVector<double> values)
    {
        std::sort(values.begin(), values.end());
        const double low = values.first();
        const double high = values.last();
        if (low != high) {
            return {low, high};
        }
        return low == 0.0 ? qMakePair(-0.5, 0.5) : qMakePair(low * 0.5, low * 1.5);
    }

    QPair<double, double> ownScale(int row) const
    {
        return extent(autoScaleY ? validYs(rows.at(row))
                                 : QVector<double>{rows.at(row).minimumY, rows.at(row).maximumY});
    }

    QPair<double, double> commonScale() const
    {
        QVector<double> ys;
        bool hasSamples = false;
        for (const PlainRow &row : rows) {
            ys += validYs(row);
            hasSamples = hasSamples || !row.samples.isEmpty();
        }
        return hasSamples ? extent(ys) : qMakePair(-0.5, 0.5);
    }

    void adjustX()
    {
        QVector<double> firsts;
        QVector<double> lasts;
        for (const PlainRow &row : rows) {
            QVector<double> xs;
            for (const QPointF &sample : row.samples) {
                if (qIsFinite(sample.x())) {
                    xs.append(sample.x());
                }
            }
            if (!xs.isEmpty()) {
                firsts.append(xs.first());
                lasts.append(xs.last());
            }
        }
        std::sort(firsts.begin(), firsts.end());
        std::sort(lasts.begin(), lasts.end());
        if (!isDynamic || autoScaleX) {
            if (!x.zoomed) {
                x.set(firsts.isEmpty() ? 0.0 : firsts.first(),
                      lasts.isEmpty() ? 0.0 : lasts.last());
            }
        } else if (!lasts.isEmpty()) {
            moveWindow(lasts.last());
        }
    }

    void moveWindow(double newest)
    {
        const double span = x.max - x.min;
        if (slides) {
            if (!x.zoomed && x.max != newest) {
                x.set(newest - span, newest);
            }
            return;
        }
        bool examined = false;
        bool crossed = false;
        for (const PlainRow &row : rows) {
            const int count = row.samples.size();
            if (count < 2) {
                continue;
            }
            examined = true;
            const QPointF last = row.samples.at(count - 1);
            const bool isValid = qIsFinite(last.x()) && qIsFinite(last.y());
            if (isValid && x.max >= row.samples.at(count - 2).x() && last.x() > x.max) {
                crossed = true;
            }
        }
        const double left = examined ? newest - 0.5 * span : newest;
        if ((!examined || crossed) && left != x.min) {
            x.set(left, span + left);
        }
    }

    QVector<PlainRow> rows;
    PlainAxis x;
    bool isDynamic = false;
    bool slides = false;
    bool autoScaleX = false;
    bool autoScaleY = false;
    bool individualScale = true;
    QVector<PlainStep> history;
    int index = 0;
};

PlainAxis plainAxis(double min, double max, bool zoomed)
{
    PlainAxis axis;
    axis.min = min;
    axis.max = max;
    axis.zoomed = zoomed;
    return axis;
}

PlainAxis plainAxis(const ChartAxis &axis)
{
    return plainAxis(axis.m_min, axis.m_max, axis.m_zoomed);
}

PlainState plainState(const AbstractChartModel &model)
{
    PlainState state;
    state.x = plainAxis(*model.m_axisX);
    for (const AbstractChartSeries *series : model.m_series) {
        state.y.append(plainAxis(*series->m_axisY));
    }
    return state;
}

PlainState plainState(const UndoAxisParams &x, const QMap<int, UndoAxisParams> &y)
{
    PlainState state;
    state.x = plainAxis(x.min, x.max, x.zoomed);
    for (const UndoAxisParams &params : y) {
        state.y.append(plainAxis(params.min, params.max, params.zoomed));
    }
    return state;
}

/// Takes a model and its twin through the same random steps, most of which are the entry of a
/// sample.
class EntryWalk
{
public:
    EntryWalk(quint32 seed, bool isDynamic, int series)
        : m_random(seed)
    {
        if (isDynamic) {
            m_model = std::make_unique<OpenDynamicModel>();
        } else {
            m_model = std::make_unique<OpenModel>();
        }
        m_plain.isDynamic = isDynamic;
        m_model->m_seriesEditable = false;
        for (int i = 0; i < series; ++i) {
            auto *one = addSeries(*m_model, QString::number(i));
            one->m_minimumY = m_random.bounded(-5, 6);
            one->m_maximumY = m_random.bounded(-5, 6);
            PlainRow row;
            row.minimumY = one->m_minimumY;
            row.maximumY = one->m_maximumY;
            m_plain.rows.append(row);
        }
        m_plain.apply(plainState(*m_model));
        configure();
    }

    QString step()
    {
        const int ticket = m_random.bounded(100);
        if (ticket < 80) {
            return enter();
        }
        if (ticket < 82) {
            return clear();
        }
        if (ticket < 88) {
            return zoom();
        }
        if (ticket < 91) {
            return release();
        }
        if (ticket < 95) {
            return undo();
        }
        if (ticket < 98) {
            return redo();
        }
        return configure();
    }

    /// What differs between the two, or nothing.
    QString difference() const
    {
        const QUndoStack &stack = *m_model->m_undoStack;
        if (stack.index() != m_plain.index || stack.count() != m_plain.history.size()) {
            return QString("history %1 of %2, not %3 of %4")
                .arg(stack.index())
                .arg(stack.count())
                .arg(m_plain.index)
                .arg(m_plain.history.size());
        }
        QStringList texts{between("axes", plainState(*m_model), m_plain.state())};
        for (int i = 0; i < stack.count(); ++i) {
            const auto &command = dynamic_cast<const ScaleCommand &>(*stack.command(i));
            const PlainStep &plain = m_plain.history.at(i);
            texts << between("before", plainState(command.m_oldParamsX, command.m_oldParamsY),
                             plain.before)
                  << between("after", plainState(command.m_newParamsX, command.m_newParamsY),
                             plain.after);
        }
        return texts.join(QString());
    }

private:
    static QString between(const char *what, const PlainState &seen, const PlainState &expected)
    {
        return seen == expected
                   ? QString()
                   : QString("%1 %2, not %3\n").arg(what, seen.text(), expected.text());
    }

    int anyRow() { return m_random.bounded(m_plain.rows.size()); }

    QPointF anySample()
    {
        m_newest += m_random.bounded(-1, 5);
        const double x = m_random.bounded(40) == 0 ? Infinity : m_newest;
        const double y = m_random.bounded(20) == 0 ? qQNaN() : m_random.bounded(-5, 6);
        return QPointF(x, y);
    }

    /// Feeders of other threads are rare here: each is a thread of its own.
    void run(const std::function<void()> &call)
    {
        if (m_random.bounded(20) > 0) {
            call();
            return;
        }
        std::thread(call).join();
        QCoreApplication::processEvents(); // so that the history has followed
    }

    QString enter()
    {
        const int row = anyRow();
        AbstractChartSeries *series = m_model->m_series.at(row);
        const int count = m_random.bounded(5) > 0 ? 1 : m_random.bounded(4);
        QVector<QPointF> samples;
        QList<ChartValue *> values;
        for (int i = 0; i < count; ++i) {
            samples.append(anySample());
            values.append(newValue(samples.last().x(), samples.last().y()));
        }
        run([&] {
            if (count == 1) {
                m_model->addValue(series, values.first());
            } else {
                m_model->addValues(series, values);
            }
        });
        m_plain.enter(row, samples);
        QStringList texts;
        for (const QPointF &sample : qAsConst(samples)) {
            texts.append(QString("%1:%2").arg(sample.x()).arg(sample.y()));
        }
        return QString("enter %1 into %2").arg(texts.join(' ')).arg(row);
    }

    QString clear()
    {
        const int row = anyRow();
        run([&] { m_model->clearValues(m_model->m_series.at(row)); });
        m_plain.clear(row);
        return QString("clear %1").arg(row);
    }

    /// Zooms an axis, at times as a step.
    QString zoom()
    {
        const int row = m_random.bounded(-1, m_plain.rows.size());
        const double min = row < 0 ? m_newest - m_random.bounded(-10, 30) : m_random.bounded(-5, 6);
        const double max = min + m_random.bounded(1, 30);
        return changeAxis(row, [=](PlainAxis &axis) { axis = plainAxis(min, max, true); });
    }

    QString release()
    {
        const int row = m_random.bounded(-1, m_plain.rows.size());
        return changeAxis(row, [](PlainAxis &axis) { axis.zoomed = false; });
    }

    QString changeAxis(int row, const std::function<void(PlainAxis &)> &change)
    {
        const bool isStep = m_random.bounded(3) > 0;
        auto command = isStep ? std::make_unique<ScaleCommand>(m_model.get()) : nullptr;
        const PlainState before = m_plain.state();
        PlainAxis &plain = row < 0 ? m_plain.x : m_plain.rows[row].axis;
        change(plain);
        ChartAxis *axis = m_model->m_axisX;
        if (row >= 0) {
            axis = m_model->m_series.at(row)->m_axisY;
        }
        axis->assignRange(plain.min, plain.max);
        axis->m_zoomed = plain.zoomed;
        if (isStep) {
            m_model->m_undoStack->push(command.release());
            m_plain.push(before);
        }
        return QString("axis %1 to %2, step %3").arg(row).arg(plain.text()).arg(isStep);
    }

    QString undo()
    {
        m_model->m_undoStack->undo();
        if (m_plain.index > 0) {
            m_plain.apply(m_plain.history.at(--m_plain.index).before);
        }
        return "undo";
    }

    QString redo()
    {
        m_model->m_undoStack->redo();
        if (m_plain.index < m_plain.history.size()) {
            m_plain.apply(m_plain.history.at(m_plain.index++).after);
        }
        return "redo";
    }

    /// The scales take effect with the samples that follow.
    QString configure()
    {
        m_plain.individualScale = m_random.bounded(2) == 0;
        m_plain.autoScaleX = m_random.bounded(4) == 0;
        m_plain.autoScaleY = m_random.bounded(2) == 0;
        m_plain.slides = m_random.bounded(2) == 0;
        m_model->m_settings.individualScale = m_plain.individualScale;
        m_model->setAutoScale(m_plain.autoScaleX, m_plain.autoScaleY);
        if (auto *dynamic = qobject_cast<DynamicChartModel *>(m_model.get())) {
            dynamic->setDynamicGrid(m_plain.slides);
        }
        // Feeders know the settings that this thread has used last.
        m_model->addValue(m_model->m_series.first(), nullptr);
        m_plain.follow(0);
        return QString("individual %1, auto X %2, auto Y %3, sliding %4")
            .arg(m_plain.individualScale)
            .arg(m_plain.autoScaleX)
            .arg(m_plain.autoScaleY)
            .arg(m_plain.slides);
    }

    QRandomGenerator m_random;
    std::unique_ptr<AbstractChartModel> m_model;
    PlainEntry m_plain;
    double m_newest = 0.0;
};

/// Writes into an axis of its choice without a word to the base class.
class WritingModel : public OpenModel
{
public:
    void adjustAxisX() override
    {
        if (m_write) {
            m_write(*this);
        }
    }

    void (*m_write)(AbstractChartModel &model) = nullptr;
};

using Write = void (*)(AbstractChartModel &model);

struct NamedWrite
{
    const char *name;
    Write write;
};

const NamedWrite Writes[] = {
    {"lower bound of X", [](AbstractChartModel &model) { model.m_axisX->m_min -= 1.0; }},
    {"upper bound of X", [](AbstractChartModel &model) { model.m_axisX->m_max += 1.0; }},
    {"zoom of X", [](AbstractChartModel &model) { model.m_axisX->m_zoomed ^= true; }},
    {"lower bound of another Y",
     [](AbstractChartModel &model) { model.m_series.last()->m_axisY->m_min -= 1.0; }},
    {"upper bound of another Y",
     [](AbstractChartModel &model) { model.m_series.last()->m_axisY->m_max += 1.0; }},
    {"zoom of another Y",
     [](AbstractChartModel &model) { model.m_series.last()->m_axisY->m_zoomed ^= true; }},
};

} // namespace

Q_DECLARE_METATYPE(Write)

/// Axes and history follow the samples as a plain second implementation has them.
class TestEntryWalk : public QObject
{
    Q_OBJECT

private slots:
    void followsAsThePlainWay_data();
    void followsAsThePlainWay();
    void noticesWhatADerivedModelWrites_data();
    void noticesWhatADerivedModelWrites();
};

void TestEntryWalk::followsAsThePlainWay_data()
{
    QTest::addColumn<bool>("isDynamic");
    QTest::addColumn<int>("series");

    for (const bool isDynamic : {false, true}) {
        for (const int series : {1, 2, 3, 10, 12}) {
            QTest::addRow("%s, %d series", isDynamic ? "dynamic" : "static", series)
                << isDynamic << series;
        }
    }
}

void TestEntryWalk::followsAsThePlainWay()
{
    constexpr quint32 Seed = 20261121;
    constexpr int Steps = 3000;
    constexpr int Shown = 10; // steps before a difference
    QFETCH(bool, isDynamic);
    QFETCH(int, series);

    EntryWalk walk(Seed + quint32(series), isDynamic, series);
    QStringList taken;
    for (int i = 0; i < Steps; ++i) {
        taken.append(walk.step());
        const QString difference = walk.difference();
        if (!difference.isEmpty()) {
            qInfo("%s", qPrintable(QStringList(taken.mid(taken.size() - Shown)).join('\n')));
        }
        QCOMPARE(difference, QString());
    }
}

void TestEntryWalk::noticesWhatADerivedModelWrites_data()
{
    QTest::addColumn<Write>("write");

    for (const NamedWrite &one : Writes) {
        QTest::newRow(one.name) << one.write;
    }
}

void TestEntryWalk::noticesWhatADerivedModelWrites()
{
    QFETCH(Write, write);
    WritingModel model;
    model.m_seriesEditable = false;
    PlainSeries *fed = addSeries(model, "fed", {1.0});
    addSeries(model, "other", {1.0});
    auto *command = new ScaleCommand(&model);
    setZoomed(*model.m_axisX, 2.0, 4.0);
    model.m_undoStack->push(command);
    const PlainState before = plainState(model);
    model.m_write = write;

    model.addValue(fed, newValue(1, 1));

    QVERIFY(!(plainState(model) == before));
    QCOMPARE(plainState(command->m_newParamsX, command->m_newParamsY).text(),
             plainState(model).text());
    model.m_write = nullptr;
    QVERIFY(settled(model));
}

QTEST_MAIN(TestEntryWalk)
#include "tst_entrywalk.moc"
