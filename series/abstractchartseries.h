#pragma once

#include "quarvchart_export.h"
#include "series/chartvalue.h"
#include "series/pendingtransform.h"
#include "settings/seriessettings.h"

#include <QColor>
#include <QImage>
#include <QLineF>
#include <QLinkedList>
#include <QList>
#include <QMutex>
#include <QObject>
#include <QPointF>
#include <QQueue>
#include <QRect>
#include <QRectF>
#include <QString>
#include <QTransform>

#include <cstddef>
#include <memory>
#include <new>
#include <optional>

class AbstractChartModel;
class ChartCursor;
class ChartPoint;
class ChartWidget;
class CursorValue;
class HorizontalChartAxis;
class PointThread;
class QPainter;
class SampleIndex;
class VerticalChartAxis;

// Qt would rather see std::list from 5.15 on; the type is part of this library's interface.
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED
/// The store of a series: a doubly linked list, so that a merge inserts and the age-out unlinks
/// without moving anything.
using ChartValueList = QLinkedList<ChartValue *>;
QT_WARNING_POP

/**
 * One plotted series: its samples, its look, its own Y axis and the worker that computes its
 * points.
 *
 * An application derives from it and supplies the six pure virtual operations. It creates the
 * series on the GUI thread and gives it up with AbstractChartModel::addSeries(): from then on the
 * model (or the undo command that took the series out) deletes it. Samples enter through the model,
 * from any thread.
 *
 * Invariant: m_minValue and m_maxValue are null or point into m_values, and are null while it is
 * empty. The order of m_values is the order of entry; only insertValues() sorts.
 *
 * Threads: minimumY(), maximumY(), precision(), format(), isValid(), stringValue() and
 * scaleString() may run on any thread with the series' locks held. They must be pure, take no locks
 * and call nothing of the model. Everything else belongs to the GUI thread unless it says
 * otherwise. Locks are taken in the order m_pointsMutex, m_valuesMutex, the model's lock on the
 * axes.
 */
class QUARVCHART_EXPORT AbstractChartSeries : public QObject
{
    Q_OBJECT

public:
    /// A visible series without samples and without a model. GUI thread.
    AbstractChartSeries();

    /// Stops the worker and frees the samples.
    ~AbstractChartSeries() override;

    /// @{
    /// As usual, but that the memory of a dead series is freed late: a feeder may still know its
    /// address, and is not to feed the next series that would live there.
    static void *operator new(std::size_t size);
    static void *operator new(std::size_t size, const std::nothrow_t &tag) noexcept;
    static void *operator new(std::size_t, void *place) noexcept { return place; }
    static void operator delete(void *memory);
    /// @}

    /// \name What an application supplies
    /// @{

    /// Lower end of the fixed Y scale, in data units; used with individual scales and without auto
    /// scale.
    virtual double minimumY() const = 0;
    /// Upper end of that scale.
    virtual double maximumY() const = 0;
    /// Digits of every number text of the series: third argument of QString::number().
    virtual int precision() const = 0;
    /// Format character of QString::number().
    virtual char format() const = 0;
    /// Colour of the cursor's read-out for a sample of this \p state. GUI thread.
    virtual QColor textColor(int state) = 0;
    /// Whether \p value counts for extremes and drawing. The body supplied here says so for a value
    /// that is not null and has a finite y and x. The answer is kept while the record does not
    /// change, so it must depend on the record alone.
    virtual bool isValid(const ChartValue *value) const = 0;

    /// @}

    /// \name What an application may replace
    /// @{

    /// Text of a value in the cursor's read-out.
    virtual QString stringValue(double value) const;
    /// Text of a value on the Y axis, with as many more digits as the zoom asks for.
    virtual QString scaleString(double value) const;
    /// What the legend shows; any text, and it need not be unique.
    virtual QString name() const;
    /// Changes what name() returns. Emits nothing; views follow with AbstractChartModel::update().
    virtual void setName(const QString &name);
    /// Title of the Y axis; empty here.
    virtual QString labelY() const;
    /// Title of the X axis: "Time" on a date-time scale, else empty.
    virtual QString labelX() const;

    /// @}

    /// \name Limits of zoom
    /// Whether one more step of factor 10 would leave the transform invertible.
    /// @{

    virtual bool canZoomOut(); ///< A step of both axes.
    virtual bool canZoomInX(); ///< A step of X alone.
    /// A step of Y alone; also false when labels would need more than four extra decimals or the Y
    /// axis refuses.
    virtual bool canZoomInY();
    virtual bool canZoomOutX(); ///< A step of X alone.
    virtual bool canZoomOutY(); ///< A step of Y alone.

    /// @}

    /// \name The store
    /// Called by the model with m_valuesMutex and its lock on the axes held; any thread.
    /// @{

    /// Appends in list order without regard to X; null entries are skipped. Takes the samples.
    void addValues(const QList<ChartValue *> &values);

    /**
     * Merges an ascending queue into the store by X, and empties the queue. Takes the samples.
     *
     * A sample whose X is stored already replaces the stored record's contents and is freed. A
     * store whose first X lies above its last takes the queue by plain append. Null entries are
     * skipped on both sides. One walk through the list.
     */
    void insertValues(QQueue<ChartValue *> &values);

    /**
     * Ages samples out by their own expireTime: the first call that finds a sample due blanks its
     * y, a later one deletes it.
     *
     * Returns whether the visible picture changed.
     */
    bool removeOldValues();

    /// Finds both extremes anew by a walk over all samples; of equal ones the last wins. To be
    /// called by an application, with the locks held, after it has changed m_values or a record in
    /// it by itself and not through the model.
    void recalculateMinMax();

    /// @}

    /// Whether the Y axis follows the data; takes effect with the next adjustment of the axes.
    void setAutoScale(bool on);

    /// \name Transform and zoom
    /// Rectangles of the screen are in pane pixels.
    /// @{

    /// Builds the transform that carries the ranges of the axes onto \p rect. An axis without span
    /// gets the factor 1; without axes nothing changes.
    void updateMatrix(const QRectF &rect);

    QPointF map(const QPointF &point) const; ///< Data to pane pixels, not rounded. Any thread.
    QLineF map(const QLineF &line) const;    ///< The same for a segment. Any thread.

    /// Pane pixels to data; (0, 0) and *\p ok false if the transform has no inverse. \p ok must not
    /// be null.
    QPointF mapInverted(const QPointF &point, bool *ok);

    /// Whether the determinant's absolute value exceeds 1e-12; a NaN counts as invertible.
    bool isInvertible(const QTransform &transform) const;

    /// Gives both axes the range that \p zoomRect shows at present and marks them as zoomed.
    /// \p chartRect is not used. Nothing changes if the transform has no inverse.
    void zoom(const QRectF &chartRect, const QRectF &zoomRect);

    /// Parks that zoom until setPendingParameters(); \p chartRect is the plot that it will fill.
    /// Several build on one another.
    void zoomPending(const QRectF &chartRect, const QRectF &zoomRect);

    /// Applies a parked zoom to the axes and the transform. No worker of the model may run.
    void setPendingParameters();

    /// The range of the axes and 0.98% beyond it on each side, in data units: what the worker clips
    /// to. Null without axes. Any thread.
    QRectF visibleRect() const;

    /// The extent of the samples, in data units, with the ends of the list as its X ends; null
    /// without valid samples. Any thread.
    QRectF fullRect() const;

    /// Starts a calculation of the points for the plot \p rect, or for the pane's own if \p rect is
    /// empty. Does nothing while one runs. updatePointsFinished() tells its end.
    void updatePoints(const QRectF &rect);

    /// @}

    /// \name Painting
    /// @{

    /**
     * Draws the computed points, and adds the read-out at \p cursorLine to \p values.
     *
     * \p rect is the plot and \p transform a further map from pane pixels to the device, identity
     * on screen; \p cursorLine is in device coordinates, null for none. Waits for a running
     * calculation. At most one read-out comes; one that reaches beyond the plot turns \p cursor's
     * boxes to the left. The painter's pen is left changed.
     */
    void paint(QPainter &painter, const QRectF &rect, const QTransform &transform,
               const QLineF &cursorLine, QList<CursorValue> &values, ChartCursor *cursor);

    /// Draws the symbol centred on \p point; nothing before the first updatePointImage().
    void paintPointImage(QPainter &painter, const QPoint &point);

    /// Draws the legend's sample of line and symbol, centred in \p rect. Restores the painter.
    void paintLogo(QPainter *painter, const QRect &rect);

    /// Renders the symbol anew from colour and size.
    void updatePointImage();

    /// Sets the diameter of the symbol in pixels; at most 1 is ignored.
    void setPointSize(int size);

    /// Returns to the look in m_defaults. A m_colorIndex outside 0 to 9 keeps the colour.
    void restoreDefault();

    /// @}

    // m_values is changed through the model. An application that changes the list or a record in it
    // by itself, with both locks held, calls recalculateMinMax() after it. To begin() a walk that
    // is not const changes a list of which there is a copy. QLinkedList is deprecated in Qt but
    // part of this interface: its users are not to be warned.
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    ChartValueList m_values; ///< Owned. m_valuesMutex, and to change the axes lock too.
    QT_WARNING_POP
    ChartValue *m_minValue = nullptr; ///< Valid sample of lowest Y. Locks as m_values.
    ChartValue *m_maxValue = nullptr; ///< Valid sample of highest Y. Locks as m_values.
    bool m_visible = true;            ///< The check box of the legend.
    QString m_name;                   ///< What setName() has stored.
    QTransform m_matrix; ///< Data to pane pixels. Takes no lock: constant while the worker runs.
    HorizontalChartAxis *m_axisX = nullptr; ///< The model's; null before the first attachment.
    VerticalChartAxis *m_axisY = nullptr;   ///< Owned. Its state is guarded by the axes lock.
    bool m_selected = false;                ///< Selected in the legend.
    QImage m_pointImage;                    ///< The symbol, rendered once per change of style.
    QColor m_color;                         ///< Of the line, the symbols and the name.
    int m_lineWidth;                        ///< Pixels.
    bool m_pointsVisible;                   ///< Whether samples get a symbol.
    int m_pointSize;                        ///< Diameter in pixels.
    bool m_customized = false;              ///< Changed by hand: settings leave it alone.
    int m_colorIndex = 0;                   ///< Default colour in m_defaults; 10 stands for none.
    ChartWidget *m_chart = nullptr;         ///< The pane that shows the series; not owned.
    SeriesSettings m_defaults;              ///< The look that restoreDefault() returns to.
    int m_extraPrecision = 0;             ///< Decimals added to Y labels. Guarded by the axes lock.
    QMutex m_pointsMutex;                 ///< First in the order: guards the worker's points.
    QMutex m_valuesMutex;                 ///< Second in the order: guards the store.
    PointThread *m_pointThread = nullptr; ///< Owned.
    PendingTransform m_pending;           ///< The zoom that zoomPending() has parked.

signals:
    /// The worker has ended; arrives on the series' thread with no lock held by the worker.
    void updatePointsFinished();

private:
    friend class AbstractChartModel;
    friend class ChartWidget;
    friend class PointThread;

    /// What is left of some neighbouring samples that have aged.
    struct AgedSamples
    {
        ChartValueList::iterator first; ///< Of no meaning if count is 0.
        int count = 0;
        bool changed = false; ///< Whether one in sight was blanked.
    };

    void appendValue(ChartValue *value);
    void detachValues();
    void appendAll(QQueue<ChartValue *> &values);
    bool descends() const;
    bool gainsByIndex(const ChartValue *head) const;
    void mergeValues(QQueue<ChartValue *> &values);
    void replaceRecord(ChartValue *stored, ChartValue *taken);
    void updateExtremes(ChartValue *value);
    void forgetExtreme(const ChartValue *value);
    bool ageStretches(double now, const QRectF &visible);
    AgedSamples ageSamples(ChartValueList::iterator node, int count, double now,
                           const QRectF &visible);
    bool blankValue(ChartValue *value, const QRectF &visible);
    bool restoreExtremes();
    void findExtremes();
    void findExtremesByIndex();
    void setMatrix(const QTransform &matrix);
    bool staysInvertible(double scaleX, double scaleY) const;

    // m_pointsMutex must be held by whoever calls these.
    void paintCurve(QPainter &painter, const QTransform &transform);
    void addReadOut(const QRectF &rect, const QTransform &transform, const QLineF &cursorLine,
                    QList<CursorValue> &values, ChartCursor *cursor);
    std::optional<quint64> curveStamp() const;
    CursorValue readOut(const QLineF &line, const QPointF &crossing, const ChartPoint &p,
                        const ChartPoint &q, double cursorPosition);
    void paintSymbols(QPainter &painter, const QLineF &line, const ChartPoint &p,
                      const ChartPoint &q);

    AbstractChartModel *m_model = nullptr; ///< The model that attached the series; not owned.
    std::unique_ptr<SampleIndex> m_index;  ///< Of m_values. Guarded by m_valuesMutex.
};
