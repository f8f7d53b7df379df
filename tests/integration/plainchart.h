#pragma once

#include <QList>
#include <QMap>
#include <QPair>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <QVector>

#include <algorithm>
#include <optional>

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

/// The data at the edges of a plot. A range of no width is shown with one unit for each pixel, and
/// Y then grows downward.
struct PlainView
{
    PlainView part(const QRectF &fractions) const
    {
        const double width = right - left;
        const double height = bottom - top;
        return {left + fractions.left() * width, left + fractions.right() * width,
                top + fractions.top() * height, top + fractions.bottom() * height};
    }

    double left = 0.0;
    double right = 0.0;
    double top = 0.0;
    double bottom = 0.0;
};

struct PlainSeriesState
{
    QVector<QPointF> samples;
    double minimumY = 0.0;
    double maximumY = 0.0;
    PlainAxis axis;
    bool autoScale = false;
    bool wasAdded = false;
    std::optional<PlainView> shown;  ///< By the points of the last calculation.
    std::optional<PlainView> parked; ///< To be shown when the calculation under way has ended.
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
    QString text;
};

class PlainChart
{
public:
    // What an application and its user do

    void add(const QStringList &names)
    {
        PlainCommand command = newCommand(PlainCommand::Add, "\"Add series\"");
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
        updateCharts();
    }

    void redo()
    {
        if (index == history.size()) {
            return;
        }
        PlainCommand &command = history[index++];
        change(command);
        apply(command.after);
        updateCharts();
    }

    /// To be followed by changes of the axes and push().
    PlainCommand newCommand(PlainCommand::Type type, const QString &name = QString()) const
    {
        PlainCommand command;
        command.type = type;
        command.text = name;
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
        updateCharts();
    }

    void undoZoom()
    {
        for (const QString &name : qAsConst(rows)) {
            series[name].axis.zoomed = false;
            adjustY(name);
        }
        x.zoomed = false;
        adjustX();
        updateCharts();
    }

    /// Gives X a new lower bound.
    void moveWindow(double minimum)
    {
        if (minimum != x.min) {
            x.set(minimum, (x.max - x.min) + minimum);
        }
        x.zoomed = true;
    }

    /// Shows the part of all plots that the fractions give, or parks that during a calculation.
    void zoom(const QRectF &fractions)
    {
        for (const QString &name : qAsConst(rows)) {
            PlainSeriesState &one = series[name];
            one.shown = one.shown.value_or(viewOf(one.axis));
        }
        for (const QString &name : qAsConst(rows)) {
            PlainSeriesState &one = series[name];
            if (isBusy()) {
                one.parked = one.parked.value_or(*one.shown).part(fractions);
            } else {
                show(one, one.shown->part(fractions));
            }
        }
        updateCharts();
    }

    // Calculations, which last until the test has them end

    void updateCharts()
    {
        if (isBusy()) {
            isUpdatePending = true;
            return;
        }
        for (const QString &name : qAsConst(rows)) {
            series[name].shown = viewOf(series[name].axis);
        }
        updating = rows;
    }

    bool isBusy() const { return !updating.isEmpty(); }

    /// First half of the end: parked zooms reach the axes.
    void applyParked()
    {
        hasEnd = isBusy() || hasEnd;
        updating.clear();
        for (const QString &name : qAsConst(rows)) {
            PlainSeriesState &one = series[name];
            if (hasEnd && one.parked) {
                show(one, *one.parked);
                one.shown = one.parked;
                one.parked.reset();
            }
        }
    }

    /// Second half: their steps follow, and one more calculation if there is something to see.
    void pushWaiting()
    {
        if (!hasEnd) {
            return;
        }
        hasEnd = false;
        while (!waiting.isEmpty()) {
            push(waiting.takeFirst());
        }
        if (isUpdatePending) {
            isUpdatePending = false;
            updateCharts();
            updating.clear();
        }
    }

    /// Takes the exact numbers of a chart that differs by rounding errors only.
    void meet(const PlainState &seen)
    {
        const PlainState own = state();
        if (own.y.size() != seen.y.size() || !isNear(own.x, seen.x)) {
            return;
        }
        for (int row = 0; row < rows.size(); ++row) {
            if (!isNear(own.y.at(row), seen.y.at(row))) {
                return;
            }
        }
        apply(seen);
    }

    /// Whether all that is shown is of a size at which rounding errors mean nothing.
    bool isTame() const
    {
        QVector<QPair<double, double>> ranges{{x.min, x.max}};
        for (const QString &name : rows) {
            const PlainSeriesState &one = series[name];
            ranges.append({one.axis.min, one.axis.max});
            for (const std::optional<PlainView> &view : {one.shown, one.parked}) {
                if (view) {
                    ranges.append({view->left, view->right});
                    ranges.append({view->bottom, view->top});
                }
            }
        }
        return std::all_of(ranges.cbegin(), ranges.cend(), isTameRange);
    }

    /// Whether the next step back, or forth, changes series.
    bool undoesSeries() const
    {
        return index > 0 && history[index - 1].type != PlainCommand::Scale;
    }
    bool redoesSeries() const
    {
        return index < history.size() && history[index].type != PlainCommand::Scale;
    }

    /// The lowest X of all first samples and the highest of all last ones.
    std::optional<QPair<double, double>> dataEdges() const
    {
        QVector<double> firsts;
        QVector<double> lasts;
        for (const QString &name : rows) {
            const QVector<QPointF> &samples = series[name].samples;
            if (!samples.isEmpty()) {
                firsts.append(samples.first().x());
                lasts.append(samples.last().x());
            }
        }
        if (firsts.isEmpty()) {
            return std::nullopt;
        }
        return qMakePair(*std::min_element(firsts.cbegin(), firsts.cend()),
                         *std::max_element(lasts.cbegin(), lasts.cend()));
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
            lines.append(QString("%1 %2 %3")
                             .arg(QString::number(i), QString::number(command.type), command.text));
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
    QSizeF plot;                 ///< Of each pane, in pixels.
    QList<PlainCommand> waiting; ///< For the end of a calculation.

private:
    static bool isNear(const PlainAxis &a, const PlainAxis &b)
    {
        constexpr double Tolerance = 1e-9; // of the largest number concerned, or of 1
        const double size = std::max({1.0, qAbs(a.min), qAbs(a.max)});
        return qAbs(a.min - b.min) <= Tolerance * size && qAbs(a.max - b.max) <= Tolerance * size &&
               a.zoomed == b.zoomed;
    }

    static bool isTameRange(const QPair<double, double> &range)
    {
        constexpr double Shortest = 1e-2;
        constexpr double Longest = 1e5;
        constexpr double Farthest = 1e6;
        const double span = qAbs(range.second - range.first);
        return (span == 0.0 || (span >= Shortest && span <= Longest)) &&
               qAbs(range.first) <= Farthest && qAbs(range.second) <= Farthest;
    }

    PlainView viewOf(const PlainAxis &y) const
    {
        return {x.min, x.max == x.min ? x.min + plot.width() : x.max, y.max,
                y.max == y.min ? y.max + plot.height() : y.min};
    }

    void show(PlainSeriesState &one, const PlainView &view)
    {
        x.set(view.left, view.right);
        x.zoomed = true;
        one.axis.set(view.top, view.bottom);
        one.axis.zoomed = true;
    }

    void change(PlainCommand &command)
    {
        if (command.takesAll) {
            rows.clear();
            hasEnd = isBusy() || hasEnd;
            updating.clear();
            adjust(QString());
            updateCharts();
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
        updateCharts();
    }

    void takeOut(const QString &name)
    {
        rows.removeAll(name);
        adjust(QString());
        updateCharts();
        if (updating.removeAll(name) > 0 && !isBusy()) {
            hasEnd = true;
        }
    }

    void restore(const PlainCommand &command)
    {
        for (auto it = command.removed.cbegin(); it != command.removed.cend(); ++it) {
            rows.insert(it.key(), it.value());
            adjust(QString());
            joinZoom(it.value());
        }
        colorIndex = command.colorIndex;
        updateCharts();
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
        if (!x.zoomed) {
            const QPair<double, double> edges = dataEdges().value_or(qMakePair(0.0, 0.0));
            x.set(edges.first, edges.second);
        }
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
    QStringList updating; ///< Series whose calculation runs.
    bool isUpdatePending = false;
    bool hasEnd = false; ///< The end of a calculation is on its way.
};
