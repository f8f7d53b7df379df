#include "integration/chartwalk.h"

#include <QAction>
#include <QFontMetrics>
#include <QtTest>

namespace {

/// A series without labels, so that all plots have the same size at any scale.
class UnlabelledSeries : public PlainSeries
{
public:
    using PlainSeries::PlainSeries;

    QString scaleString(double) const override { return QString(); }
};

struct ZoomAction
{
    QAction *AbstractChartModel::*action;
    QRectF target; ///< In fractions of the plot.
};

const ZoomAction ZoomActions[] = {
    {&AbstractChartModel::m_zoomInAction, {0.25, 0.25, 0.5, 0.5}},
    {&AbstractChartModel::m_zoomOutAction, {-0.5, -0.5, 2.0, 2.0}},
    {&AbstractChartModel::m_zoomInXAction, {0.25, 0.0, 0.5, 1.0}},
    {&AbstractChartModel::m_zoomOutXAction, {-0.5, 0.0, 2.0, 1.0}},
    {&AbstractChartModel::m_zoomInYAction, {0.0, 0.25, 1.0, 0.5}},
    {&AbstractChartModel::m_zoomOutYAction, {0.0, -0.5, 1.0, 2.0}},
    {&AbstractChartModel::m_scrollUpAction, {0.0, -1.0, 1.0, 1.0}},
    {&AbstractChartModel::m_scrollDownAction, {0.0, 1.0, 1.0, 1.0}},
};

QString quoted(const QString &text)
{
    return '"' + text + '"';
}

/**
 * Zooms, scrolls and drags among changes of series, samples and panes, undo and redo.
 *
 * A calculation ends only where the walk has it end, so each step knows whether it is parked. A
 * step of the user that has begun, or that is parked, is brought to its end before the number of
 * series changes: what it knows is told by rows.
 */
class ZoomWalk : public ChartWalk
{
public:
    explicit ZoomWalk(quint32 seed)
        : ChartWalk(seed)
    {
        // The outer panes have the margins of the inner ones.
        m_model->m_axisX->m_size = QFontMetrics(m_model->mainChart()->font()).height();
        m_plain.plot = plot().size();

        addPrepared(
            5, [this] { return calm(); }, [this] { return add(); });
        addPrepared(
            3, [this] { return calm(); }, [this] { return remove(); });
        addPrepared(
            1, [this] { return calm(); }, [this] { return removeAll(); });
        addChoice(10, [this] { return enter(); });
        addChoice(1, [this] { return clear(); });
        addPrepared(
            12, [this] { return tamed(); }, [this] { return zoomByAction(); });
        addPrepared(
            8, [this] { return tamed(); }, [this] { return zoomInPane(); });
        addPrepared(
            8, [this] { return tamed(); }, [this] { return scroll(); });
        addChoice(2, [this] { return undoZoomByAction(); });
        addChoice(1, [this] { return undoZoom(); });
        addChoice(3, [this] { return beginDrag(); });
        addPrepared(
            5, [this] { return tamed(); }, [this] { return stepOfDrag(); });
        addChoice(4, [this] { return endDrag(); });
        addPrepared(
            10, [this] { return m_plain.undoesSeries() ? calm() : QString(); },
            [this] { return undo(); });
        addPrepared(
            8, [this] { return m_plain.redoesSeries() ? calm() : QString(); },
            [this] { return redo(); });
        addChoice(2, [this] { return configure(false); });
        addChoice(2, [this] { return switchMode(); });
        addChoice(2, [this] { return addPane(); });
        addChoice(20, [this] { return settle(); });
    }

    QString paneFault() const override
    {
        for (const ChartWidget *pane : qAsConst(m_model->m_charts)) {
            if (pane->chartRect(QRectF()) != plot()) {
                return "the plots differ";
            }
        }
        return ChartWalk::paneFault();
    }

protected:
    PlainSeries *newSeries(const QString &name) const override
    {
        return new UnlabelledSeries(name);
    }

private:
    /// A step, and what is to be done before it.
    void addPrepared(int weight, const std::function<QString()> &prepare,
                     const std::function<QString()> &step)
    {
        addChoice(weight, [prepare, step] {
            const QString before = prepare();
            return before + step();
        });
    }

    QRectF plot() const { return m_model->mainChart()->chartRect(QRectF()); }

    ChartWidget *anyPane() { return m_model->m_charts.at(m_random.bounded(paneCount())); }

    int paneCount() const { return m_model->m_charts.size(); }

    /// One of the numbers -2 to 2 quarters.
    double anyOffset() { return 0.25 * m_random.bounded(-2, 3); }

    PlainState seenState() const
    {
        const auto seen = [](const ChartAxis &axis) {
            PlainAxis plain;
            plain.min = axis.m_min;
            plain.max = axis.m_max;
            plain.zoomed = axis.m_zoomed;
            return plain;
        };
        PlainState state;
        state.x = seen(*m_model->m_axisX);
        for (const AbstractChartSeries *series : qAsConst(m_model->m_series)) {
            state.y.append(seen(*series->m_axisY));
        }
        return state;
    }

    /// A zoom that the chart has made already, of the part of the plots that the fractions give.
    void follow(const QRectF &part, bool isStep, const QString &text)
    {
        const bool parks = m_plain.isBusy();
        const PlainCommand command = m_plain.newCommand(PlainCommand::Scale, text);
        if (part.isValid()) {
            m_plain.zoom(part);
            m_plain.meet(seenState());
        }
        if (isStep && parks) {
            m_plain.waiting.append(command);
        } else if (isStep) {
            m_plain.push(command);
        }
    }

    QString zoomByAction()
    {
        const ZoomAction &zoom = ZoomActions[m_random.bounded(int(std::size(ZoomActions)))];
        const QString name = trigger(m_model.get()->*zoom.action);
        follow(zoom.target, true, quoted(name));
        return name;
    }

    QString trigger(QAction *action)
    {
        action->setEnabled(true);
        action->trigger();
        return action->text();
    }

    /// As the mouse does it: a part of the plot, at times one without any width.
    QString zoomInPane()
    {
        const double sizes[] = {0.5, 0.75, 1.0, 1.5};
        const bool isDegenerate = m_random.bounded(8) == 0;
        const QRectF part = isDegenerate
                                ? QRectF()
                                : QRectF(anyOffset(), anyOffset(), sizes[m_random.bounded(4)],
                                         sizes[m_random.bounded(4)]);
        const int code = m_random.bounded(3);
        ChartWidget *pane = anyPane();
        pane->m_commandText = QString("Zoom %1").arg(code);
        const QRectF target = partOf(plot(), part.x(), part.y(), part.width(), part.height());
        emit pane->zoomChanged(plot(), target, code);
        follow(part, code != 0, quoted(pane->m_commandText));
        return QString("zoom in a pane to %1,%2 %3x%4 with code %5")
            .arg(part.x())
            .arg(part.y())
            .arg(part.width())
            .arg(part.height())
            .arg(code);
    }

    QString scroll()
    {
        const double span = m_plain.x.max - m_plain.x.min;
        const auto edges = m_plain.dataEdges();
        switch (m_random.bounded(4)) {
        case 0:
            return scrollTo(m_model->m_scrollBackAction, m_plain.x.min - span);
        case 1:
            return scrollTo(m_model->m_scrollForwardAction, span + m_plain.x.min);
        case 2:
            return scrollTo(m_model->m_scrollToBeginAction,
                            edges ? std::make_optional(edges->first) : std::nullopt);
        default:
            return scrollTo(m_model->m_scrollToEndAction,
                            edges ? std::make_optional(edges->second - 0.5 * span) : std::nullopt);
        }
    }

    QString scrollTo(QAction *action, std::optional<double> minimum)
    {
        trigger(action);
        if (minimum) {
            const PlainCommand command =
                m_plain.newCommand(PlainCommand::Scale, quoted(action->text()));
            m_plain.moveWindow(*minimum);
            m_plain.push(command);
            m_plain.updateCharts();
        }
        return action->text();
    }

    QString undoZoomByAction()
    {
        const QString name = trigger(m_model->m_undoZoomAction);
        const PlainCommand command = m_plain.newCommand(PlainCommand::Scale, quoted(name));
        m_plain.undoZoom();
        m_plain.push(command);
        return name;
    }

    QString undoZoom()
    {
        m_model->undoZoom();
        m_plain.undoZoom();
        return "return from the zoom without a step";
    }

    QString beginDrag()
    {
        emit anyPane()->beginMove();
        m_drag = m_plain.newCommand(PlainCommand::Scale, quoted("Move"));
        return "begin drag";
    }

    QString stepOfDrag()
    {
        const QPointF way(anyOffset(), anyOffset());
        emit anyPane()->zoomChanged(plot(), partOf(plot(), way.x(), way.y(), 1.0, 1.0), 0);
        follow(QRectF(way, QSizeF(1.0, 1.0)), false, QString());
        return QString("drag by %1,%2").arg(way.x()).arg(way.y());
    }

    QString endDrag()
    {
        ChartWidget *pane = anyPane();
        pane->m_commandText = "Move";
        emit pane->endMove();
        if (m_drag) {
            m_plain.push(*m_drag);
            m_drag.reset();
        }
        return "end drag";
    }

    QString addPane()
    {
        if (m_model->m_chartMode == AbstractChartModel::SingleMode) {
            return "add no pane";
        }
        m_model->slotAddChart();
        m_plain.updateCharts();
        return "add pane";
    }

    /// Lets the calculations end.
    QString settle()
    {
        if (!settled(*m_model)) {
            return "settle in vain";
        }
        m_plain.applyParked();
        m_plain.meet(seenState());
        m_plain.pushWaiting();
        return "settle";
    }

    /// Ends what has begun.
    QString calm()
    {
        QString steps;
        if (m_drag) {
            steps += endDrag() + ", ";
        }
        if (!m_plain.waiting.isEmpty()) {
            steps += settle() + ", ";
        }
        return steps;
    }

    /// Returns to the data from where numbers have grown too large or too small.
    QString tamed()
    {
        if (m_plain.isTame()) {
            return QString();
        }
        QString steps = settle();
        steps += ", " + undoZoomByAction();
        return steps + ", " + settle() + ", ";
    }

    std::optional<PlainCommand> m_drag;
};

} // namespace

class TestZoomHistory : public QObject
{
    Q_OBJECT

private slots:
    void walksWithItsPlainTwin_data();
    void walksWithItsPlainTwin();
};

void TestZoomHistory::walksWithItsPlainTwin_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<int>("steps");

    // Many short ones, so that a failure has few steps, and some that fill the history.
    for (quint32 seed = 1; seed <= 40; ++seed) {
        QTest::addRow("short, seed %u", seed) << seed << 40;
    }
    for (quint32 seed = 41; seed <= 44; ++seed) {
        QTest::addRow("long, seed %u", seed) << seed << 1000;
    }
}

void TestZoomHistory::walksWithItsPlainTwin()
{
    QFETCH(quint32, seed);
    QFETCH(int, steps);
    ZoomWalk walk(seed);

    QVERIFY(walksWell(walk, steps));

    walk.finish();
    QCOMPARE(walk.deadText(), walk.allText());
}

QTEST_MAIN(TestZoomHistory)
#include "tst_zoomhistory.moc"
