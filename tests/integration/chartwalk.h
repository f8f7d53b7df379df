#pragma once

#include "integration/plainchart.h"
#include "support/modelsetup.h"
#include "undo/scalecommand.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QUndoStack>

#include <functional>
#include <memory>

/**
 * Takes a chart and its plain twin through the same random steps. A derived walk says which, and
 * how often.
 */
class ChartWalk
{
public:
    explicit ChartWalk(quint32 seed)
        : m_random(seed)
        , m_model(std::make_unique<OpenModel>())
        , m_tester(m_model.get())
    {
    }
    Q_DISABLE_COPY_MOVE(ChartWalk)
    virtual ~ChartWalk() = default;

    /// Takes one step; returns its description.
    QString step()
    {
        int ticket = m_random.bounded(m_weights);
        auto choice = m_choices.cbegin();
        while (ticket >= choice->weight) {
            ticket -= choice->weight;
            ++choice;
        }
        return choice->step();
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
            lines.append(
                QString("%1 %2 %3")
                    .arg(QString::number(i), QString::number(command.type()), command.text()));
            if (PlainChart::isNextToIndex(i, stack.index())) {
                lines.append(stateText(command.m_oldParamsX, command.m_oldParamsY) + " -> " +
                             stateText(command.m_newParamsX, command.m_newParamsY));
            }
        }
        lines.append("dead " + deadText());
        return lines.join('\n');
    }

    /// What is wrong with the panes, or nothing.
    virtual QString paneFault() const
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
        return QString();
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

protected:
    void addChoice(int weight, const std::function<QString()> &step)
    {
        m_choices.append({weight, step});
        m_weights += weight;
    }

    /// Makes a series for the chart; the caller owns it.
    virtual PlainSeries *newSeries(const QString &name) const { return new PlainSeries(name); }

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
            PlainSeries *series = newSeries(name);
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

    QString configure(bool autoScaleY)
    {
        m_plain.individualScale = m_random.bounded(2) == 0;
        m_plain.autoScaleY = autoScaleY;
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
        m_plain.updateCharts();
        return "switch mode";
    }

    QRandomGenerator m_random;
    PlainChart m_plain;
    QMap<QString, int> m_deaths;
    QMap<QString, AbstractChartSeries *> m_series; ///< The dead ones too.
    std::unique_ptr<OpenModel> m_model;

private:
    struct Choice
    {
        int weight;
        std::function<QString()> step;
    };

    QVector<Choice> m_choices;
    int m_weights = 0;
    int m_made = 0;
    QAbstractItemModelTester m_tester;
};

/// Takes steps and looks after each whether the chart and its twin agree. If they do not, prints
/// the steps to there and the difference, and returns false.
inline bool walksWell(ChartWalk &walk, int steps)
{
    QStringList taken;
    for (int i = 0; i < steps; ++i) {
        taken.append(QString("%1: %2").arg(QString::number(i), walk.step()));
        const QString text = walk.text();
        const QString expected = walk.expectedText();
        const QString paneFault = walk.paneFault();
        if (text != expected || !paneFault.isEmpty()) {
            qInfo("%s", qPrintable(taken.join('\n')));
            qInfo("gives\n%s\nand not\n%s", qPrintable(text), qPrintable(expected));
            qInfo("%s", qPrintable(paneFault));
            return false;
        }
    }
    return true;
}
