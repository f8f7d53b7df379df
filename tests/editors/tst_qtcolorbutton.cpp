#include "editors/qtcolorbutton.h"

#include "editors/qtcolorbutton_p.h"
#include "support/dialoganswer.h"
#include "support/metatext.h"
#include "support/paintcounter.h"
#include "support/quietplatform.h"

#include <QApplication>
#include <QColorDialog>
#include <QDrag>
#include <QDragEnterEvent>
#include <QImage>
#include <QMimeData>
#include <QMouseEvent>
#include <QPixmap>
#include <QRandomGenerator>
#include <QtTest>

#include <memory>
#include <optional>

namespace {

const QColor Red(255, 0, 0);
const QColor Blue(0, 0, 255);
const QColor PaleBlue(0, 0, 255, 102); // at two fifths

constexpr QSize ButtonSize(60, 30);
constexpr QPoint Middle(30, 15);

/// A drag's payload of one colour.
std::unique_ptr<QMimeData> colorMime(const QVariant &color)
{
    auto mime = std::make_unique<QMimeData>();
    mime->setColorData(color);
    return mime;
}

/// A payload that answers with what it was given, as one from another program may.
class ForeignMime : public QMimeData
{
public:
    explicit ForeignMime(const QVariant &data)
        : m_data(data)
    {
    }
    bool hasFormat(const QString &type) const override { return formats().contains(type); }
    QStringList formats() const override { return {QStringLiteral("application/x-color")}; }

protected:
    QVariant retrieveData(const QString &, QVariant::Type) const override { return m_data; }

private:
    QVariant m_data;
};

/// Hands an event to the button itself: the application wants to know of a drag before it passes
/// such events on.
void hand(QtColorButton &button, QEvent &event)
{
    static_cast<QObject &>(button).event(&event);
}

/// Returns whether the button takes the drag.
bool dragEnter(QtColorButton &button, const QMimeData &mime, bool acceptedBefore = false)
{
    QDragEnterEvent event(Middle, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    event.setAccepted(acceptedBefore);
    hand(button, event);
    return event.isAccepted();
}

bool dragLeave(QtColorButton &button)
{
    QDragLeaveEvent event;
    event.ignore();
    hand(button, event);
    return event.isAccepted();
}

bool drop(QtColorButton &button, const QMimeData &mime)
{
    QDropEvent event(Middle, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    hand(button, event);
    return event.isAccepted();
}

void press(QWidget &widget, const QPoint &position, Qt::MouseButton button = Qt::LeftButton)
{
    QMouseEvent event(QEvent::MouseButtonPress, position, button, button, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

/// Returns whether the button accepts the event. Handed to the button itself: the application keeps
/// back what comes without a mouse button.
bool move(QtColorButton &button, const QPoint &position, Qt::MouseButtons buttons)
{
    QMouseEvent event(QEvent::MouseMove, position, Qt::NoButton, buttons, Qt::NoModifier);
    hand(button, event);
    return event.isAccepted();
}

void release(QWidget &widget, const QPoint &position)
{
    QMouseEvent event(QEvent::MouseButtonRelease, position, Qt::LeftButton, Qt::NoButton,
                      Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

/// The drag that a button has started, or null. The platform of the tests ends it at once, and the
/// event loop then deletes it.
const QDrag *dragOf(const QtColorButton &button)
{
    return button.findChild<QDrag *>();
}

/// Shows a button and waits until nothing more comes from that which repaints it.
bool isShown(QtColorButton &button)
{
    button.show();
    QApplication::setActiveWindow(&button);
    return QTest::qWaitForWindowExposed(&button) && QTest::qWaitForWindowActive(&button);
}

QImage imageOf(QWidget &widget)
{
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

/// What a tool button without a colour looks like.
QImage plainButtonImage(const QSize &size, bool enabled = true)
{
    QToolButton button;
    button.resize(size);
    button.setEnabled(enabled);
    return imageOf(button);
}

/// One channel of a colour of \p alpha over another.
int blended(int over, int alpha, int under)
{
    return qRound((over * alpha + under * (255 - alpha)) / 255.0);
}

QColor blended(const QColor &over, const QColor &under)
{
    const int alpha = over.alpha();
    return QColor(blended(over.red(), alpha, under.red()),
                  blended(over.green(), alpha, under.green()),
                  blended(over.blue(), alpha, under.blue()));
}

/// Whether \p position lies in a square of the first colour of a board with a corner at \p origin.
bool isFirstSquare(const QPoint &position, const QPoint &origin, int square)
{
    const auto number = [square](int distance) {
        int squares = 0;
        while (distance < 0) {
            distance += square;
            ++squares;
        }
        return squares + distance / square;
    };
    return (number(position.x() - origin.x()) + number(position.y() - origin.y())) % 2 == 0;
}

/// Distance of a pixel from the edge of a rectangle that holds it; negative for one outside.
int depthIn(const QRect &rect, const QPoint &position)
{
    const int x = qMin(position.x() - rect.left(), rect.right() - position.x());
    const int y = qMin(position.y() - rect.top(), rect.bottom() - position.y());
    return qMin(x, y);
}

/// One pixel of a button, the plain way.
QColor expectedButtonPixel(const QPoint &position, const QSize &size, const QColor &color,
                           bool checkered, const QColor &background)
{
    const QRect area(4, 4, size.width() - 8, size.height() - 8);
    const int depth = depthIn(area, position);
    if (depth < 0) {
        return background;
    }
    const QPoint origin((area.width() % 10 + 10) / 2 + 4, (area.height() % 10 + 10) / 2 + 4);
    const QColor square =
        isFirstSquare(position, origin, 10) ? QColor(Qt::white) : QColor(Qt::black);
    const QColor inside = blended(color, checkered ? square : background);
    if (depth == 0) {
        return blended(QColor(0, 0, 0, 51), inside);
    }
    return depth == 1 ? blended(QColor(0, 0, 0, 26), inside) : inside;
}

/// One pixel of a drag's picture, the plain way.
QColor expectedDragPixel(const QPoint &position, const QColor &color)
{
    if (depthIn(QRect(0, 0, 24, 24), position) == 0) {
        return Qt::black;
    }
    if (QRect(6, 6, 11, 11).contains(position)) {
        return QColor(color.red(), color.green(), color.blue());
    }
    const bool isLight = isFirstSquare(position, QPoint(12, 12), 20);
    return blended(color, isLight ? QColor(192, 192, 192) : QColor(128, 128, 128));
}

/// Equal but for the rounding of two blendings on top of each other.
bool isSame(const QColor &a, const QColor &b)
{
    constexpr int Tolerance = 2;
    return qAbs(a.red() - b.red()) <= Tolerance && qAbs(a.green() - b.green()) <= Tolerance &&
           qAbs(a.blue() - b.blue()) <= Tolerance;
}

/// The first pixel that differs from what \p expected gives for its place, as text; else empty.
template <typename Expected>
QString firstDifference(const QImage &image, const Expected &expected)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor wanted = expected(QPoint(x, y));
            const QColor found = image.pixelColor(x, y);
            if (!isSame(found, wanted)) {
                return QString("%1,%2: %3, not %4").arg(x).arg(y).arg(found.name(), wanted.name());
            }
        }
    }
    return QString();
}

QString buttonDifference(const QImage &image, const QColor &color, bool checkered)
{
    const QImage plain = plainButtonImage(image.size());
    return firstDifference(image, [&](const QPoint &position) {
        return expectedButtonPixel(position, image.size(), color, checkered,
                                   plain.pixelColor(position));
    });
}

QString dragDifference(const QImage &image, const QColor &color)
{
    return firstDifference(
        image, [&](const QPoint &position) { return expectedDragPixel(position, color); });
}

QColor randomColor(QRandomGenerator &random)
{
    return QColor(random.bounded(256), random.bounded(256), random.bounded(256),
                  random.bounded(256));
}

} // namespace

class TestQtColorButton : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void metaObjectHasItsOrder();
    void startsWithoutColor();
    void setColorRepaintsOnlyForAnotherColor();
    void backgroundCheckeredRepaintsOnlyOnChange();

    void clickOpensColorDialog();
    void dialogChoosesColor();
    void dialogLeavesColorAlone_data();
    void dialogLeavesColorAlone();
    void buttonMayDieUnderItsDialog();

    void dragStartsBeyondStartDragDistance_data();
    void dragStartsBeyondStartDragDistance();
    void dragCarriesColorAndPicture();
    void dragCarriesOwnColorUnderForeignDrag();
    void noClickFollowsADrag();
    void onlyLeftButtonArmsTheDrag();
    void moveWithoutLeftButtonGoesToBase();
    void shortMoveGoesToBase();

    void previewsOfferedColor();
    void convertsOfferedColor_data();
    void convertsOfferedColor();
    void refusesDragWithoutColor();
    void dropTakesColor();
    void dropOfEqualColorDoesNothing();

    void paintsColorOverCheckerBoard_data();
    void paintsColorOverCheckerBoard();
    void paintsRandomButtonsLikePlainWay();
    void paintsFlatOpaqueColorWithinFrames();
    void translucentColorUncheckedShowsTheButton();
    void disabledButtonShowsNoColor();
    void paintsInvalidColorAsItIs();
    void dragPictureIsCheckedRingAroundOpaqueCentre_data();
    void dragPictureIsCheckedRingAroundOpaqueCentre();
    void dragPictureOfOpaqueColorIsFlat();
    void dragPictureIgnoresBackgroundCheckered();

private:
    std::optional<QuietPlatform> m_quiet; // a colour dialog has a fixed size
};

void TestQtColorButton::init()
{
    m_quiet.emplace();
}

void TestQtColorButton::cleanup()
{
    m_quiet.reset();
}

void TestQtColorButton::metaObjectHasItsOrder()
{
    QCOMPARE(ownMethodsText(QtColorButton::staticMetaObject),
             QString("signal colorChanged(QColor), public slot setColor(QColor), "
                     "private slot slotEditColor()"));
    QCOMPARE(ownPropertiesText(QtColorButton::staticMetaObject),
             QString("bool backgroundCheckered"));
}

void TestQtColorButton::startsWithoutColor()
{
    QWidget parent;
    const auto *button = new QtColorButton(&parent);

    QCOMPARE(button->parentWidget(), &parent);
    QVERIFY(!button->color().isValid());
    QVERIFY(button->isBackgroundCheckered());
    QVERIFY(button->acceptDrops());
    QCOMPARE(button->sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(button->sizePolicy().verticalPolicy(), QSizePolicy::Preferred);
    const QToolButton plain;
    QCOMPARE(button->sizeHint(), plain.sizeHint());
    QCOMPARE(button->minimumSizeHint(), plain.minimumSizeHint());

    const QtColorButtonPrivate &d = *button->d_ptr;
    QCOMPARE(d.q_ptr, button);
    QVERIFY(!d.m_color.isValid() && !d.m_dragColor.isValid() && !d.shownColor().isValid());
    QCOMPARE(d.m_dragStart, QPoint(0, 0));
    QVERIFY(!d.m_dragging && d.m_backgroundCheckered);
}

void TestQtColorButton::setColorRepaintsOnlyForAnotherColor()
{
    QtColorButton button;
    button.setColor(Red);
    const QSignalSpy changes(&button, SIGNAL(colorChanged(QColor)));
    PaintCounter paints(&button);
    QVERIFY(isShown(button));
    paints.take();

    button.setColor(Red);
    QCOMPARE(paints.take(), 0);

    button.setColor(Blue);
    QCOMPARE(paints.take(), 1);
    QCOMPARE(button.color(), Blue);

    button.setColor(PaleBlue); // differs in its alpha only
    QCOMPARE(paints.take(), 1);
    QCOMPARE(button.color(), PaleBlue);
    QCOMPARE(changes.size(), 0);
}

void TestQtColorButton::backgroundCheckeredRepaintsOnlyOnChange()
{
    QtColorButton button;
    PaintCounter paints(&button);
    QVERIFY(isShown(button));
    paints.take();

    button.setBackgroundCheckered(true);
    QCOMPARE(paints.take(), 0);

    QVERIFY(button.setProperty("backgroundCheckered", false));
    QVERIFY(!button.isBackgroundCheckered());
    QCOMPARE(button.property("backgroundCheckered"), QVariant(false));
    QCOMPARE(paints.take(), 1);

    button.setBackgroundCheckered(false);
    QCOMPARE(paints.take(), 0);
}

void TestQtColorButton::clickOpensColorDialog()
{
    QtColorButton button;
    button.resize(ButtonSize);
    button.setColor(PaleBlue);
    QWidget *parent = nullptr;
    QString title;
    QColor shown;
    QColorDialog::ColorDialogOptions options;
    DialogAnswer<QColorDialog> answer{[&](QColorDialog &dialog) {
        parent = dialog.parentWidget();
        title = dialog.windowTitle();
        shown = dialog.currentColor();
        options = dialog.options();
        dialog.reject();
    }};

    QTest::mouseClick(&button, Qt::LeftButton, Qt::NoModifier, Middle);

    QVERIFY(answer.isDone());
    QCOMPARE(parent, &button);
    QCOMPARE(title, QColorDialog().windowTitle()); // Qt's own, since none is given
    QCOMPARE(shown, PaleBlue);
    QCOMPARE(options, QColorDialog::ColorDialogOptions(QColorDialog::ShowAlphaChannel));
}

void TestQtColorButton::dialogChoosesColor()
{
    QtColorButton button;
    button.setColor(Red);
    QSignalSpy changes(&button, SIGNAL(colorChanged(QColor)));
    QColor colorAtSignal;
    connect(&button, &QtColorButton::colorChanged, this, [&] { colorAtSignal = button.color(); });
    DialogAnswer<QColorDialog> answer{[](QColorDialog &dialog) {
        dialog.setCurrentColor(PaleBlue);
        dialog.accept();
    }};

    button.click();

    QVERIFY(answer.isDone());
    QCOMPARE(button.color(), PaleBlue);
    QCOMPARE(colorAtSignal, PaleBlue);
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.constFirst().constFirst().value<QColor>(), PaleBlue);
}

void TestQtColorButton::dialogLeavesColorAlone_data()
{
    QTest::addColumn<QColor>("chosen");
    QTest::addColumn<bool>("accepted");

    QTest::newRow("cancelled") << Red << false;
    QTest::newRow("cancelled after another choice") << Blue << false;
    QTest::newRow("same colour accepted") << Red << true;
}

void TestQtColorButton::dialogLeavesColorAlone()
{
    QFETCH(QColor, chosen);
    QFETCH(bool, accepted);
    QtColorButton button;
    button.setColor(Red);
    const QSignalSpy changes(&button, SIGNAL(colorChanged(QColor)));
    DialogAnswer<QColorDialog> answer{[&](QColorDialog &dialog) {
        dialog.setCurrentColor(chosen);
        static_cast<QDialog &>(dialog).done(accepted ? QDialog::Accepted : QDialog::Rejected);
    }};

    button.click();

    QVERIFY(answer.isDone());
    QCOMPARE(button.color(), Red);
    QCOMPARE(changes.size(), 0);
}

void TestQtColorButton::buttonMayDieUnderItsDialog()
{
    auto *parent = new QWidget;
    auto *button = new QtColorButton(parent);
    button->setColor(Red);
    const QSignalSpy changes(button, SIGNAL(colorChanged(QColor)));
    DialogAnswer<QColorDialog> answer{[&](QColorDialog &dialog) {
        dialog.setCurrentColor(Blue);
        delete parent;
    }};

    button->click();

    QVERIFY(answer.isDone());
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(changes.size(), 0);
}

void TestQtColorButton::dragStartsBeyondStartDragDistance_data()
{
    QTest::addColumn<int>("distance");
    QTest::addColumn<QPoint>("way");
    QTest::addColumn<bool>("starts");

    QTest::newRow("10 to the right of 10") << 10 << QPoint(10, 0) << false;
    QTest::newRow("11 to the right of 10") << 10 << QPoint(11, 0) << true;
    QTest::newRow("11 to the left of 10") << 10 << QPoint(-11, 0) << true;
    QTest::newRow("6 and 4 of 10") << 10 << QPoint(6, -4) << false;
    QTest::newRow("6 and 5 of 10") << 10 << QPoint(-6, 5) << true;
    QTest::newRow("4 of 4") << 4 << QPoint(0, 4) << false;
    QTest::newRow("5 of 4") << 4 << QPoint(0, 5) << true;
}

void TestQtColorButton::dragStartsBeyondStartDragDistance()
{
    QFETCH(int, distance);
    QFETCH(QPoint, way);
    QFETCH(bool, starts);
    const int former = QApplication::startDragDistance();
    QApplication::setStartDragDistance(distance);
    QtColorButton button;
    button.resize(ButtonSize);
    button.setColor(Red);

    press(button, Middle);
    const bool accepted = move(button, Middle + way, Qt::LeftButton);
    QApplication::setStartDragDistance(former);

    QCOMPARE(dragOf(button) != nullptr, starts);
    QVERIFY(accepted);
    QCOMPARE(button.isDown(), !starts);
}

void TestQtColorButton::dragCarriesColorAndPicture()
{
    QtColorButton button;
    button.resize(ButtonSize);
    button.setColor(PaleBlue);

    press(button, Middle);
    QVERIFY(button.isDown());
    move(button, Middle + QPoint(20, 0), Qt::LeftButton);

    const QDrag *drag = dragOf(button);
    QVERIFY(drag);
    QCOMPARE(drag->source(), &button);
    QCOMPARE(drag->mimeData()->formats().join(' '), QString("application/x-color"));
    QCOMPARE(drag->mimeData()->colorData().value<QColor>(), PaleBlue);
    QCOMPARE(drag->supportedActions(), Qt::DropActions(Qt::CopyAction));
    QCOMPARE(dragDifference(drag->pixmap().toImage(), PaleBlue), QString());
    QVERIFY(!button.isDown());
}

void TestQtColorButton::dragCarriesOwnColorUnderForeignDrag()
{
    QtColorButton button;
    button.resize(ButtonSize);
    button.setColor(Red);
    QVERIFY(dragEnter(button, *colorMime(Blue)));

    press(button, Middle);
    move(button, Middle + QPoint(20, 0), Qt::LeftButton);

    const QDrag *drag = dragOf(button);
    QVERIFY(drag);
    QCOMPARE(drag->mimeData()->colorData().value<QColor>(), Red);
    QCOMPARE(dragDifference(drag->pixmap().toImage(), Blue), QString()); // the colour that it shows
}

void TestQtColorButton::noClickFollowsADrag()
{
    QtColorButton button;
    button.resize(ButtonSize);
    const QSignalSpy clicks(&button, SIGNAL(clicked()));
    const DialogAnswer<QColorDialog> answer{}; // rejects the dialog that a click would open

    press(button, Middle);
    move(button, Middle + QPoint(20, 0), Qt::LeftButton);
    QVERIFY(dragOf(button));
    release(button, Middle);

    QCOMPARE(clicks.size(), 0);
}

void TestQtColorButton::onlyLeftButtonArmsTheDrag()
{
    QtColorButton button;
    button.resize(ButtonSize);

    press(button, QPoint(12, 7));
    QCOMPARE(button.d_ptr->m_dragStart, QPoint(12, 7));

    press(button, QPoint(40, 20), Qt::RightButton);
    press(button, QPoint(41, 20), Qt::MiddleButton);
    QCOMPARE(button.d_ptr->m_dragStart, QPoint(12, 7));

    // Near to where the left button went down, and far from where the others did.
    move(button, QPoint(14, 7), Qt::LeftButton | Qt::RightButton);
    QVERIFY(!dragOf(button));
}

void TestQtColorButton::moveWithoutLeftButtonGoesToBase()
{
    QtColorButton button;
    button.resize(ButtonSize);
    press(button, Middle);
    release(button, Middle + QPoint(100, 0)); // outside: no click

    // A button leaves alone what it is not pressed for.
    QVERIFY(!move(button, Middle + QPoint(20, 0), Qt::NoButton));
    QVERIFY(!move(button, Middle + QPoint(20, 0), Qt::RightButton));
    QVERIFY(!move(button, Middle + QPoint(20, 0), Qt::MiddleButton));
    QVERIFY(!dragOf(button));
}

void TestQtColorButton::shortMoveGoesToBase()
{
    QtColorButton button;
    button.resize(ButtonSize);
    const QSignalSpy clicks(&button, SIGNAL(clicked()));
    DialogAnswer<QColorDialog> answer{[](QColorDialog &dialog) { dialog.reject(); }};

    press(button, QPoint(2, 2));
    move(button, QPoint(-2, 2), Qt::LeftButton);
    QVERIFY(!button.isDown()); // off the button
    move(button, QPoint(1, 2), Qt::LeftButton);
    QVERIFY(button.isDown());

    release(button, QPoint(1, 2));
    QCOMPARE(clicks.size(), 1);
    QVERIFY(answer.isDone());
}

void TestQtColorButton::previewsOfferedColor()
{
    QtColorButton button;
    button.resize(ButtonSize);
    button.setColor(Red);
    const QSignalSpy changes(&button, SIGNAL(colorChanged(QColor)));
    PaintCounter paints(&button);
    QVERIFY(isShown(button));
    paints.take();

    QVERIFY(dragEnter(button, *colorMime(PaleBlue)));
    QCOMPARE(button.color(), Red);
    QCOMPARE(button.d_ptr->shownColor(), PaleBlue);
    QCOMPARE(paints.take(), 1);
    QCOMPARE(buttonDifference(imageOf(button), PaleBlue, true), QString());
    QCOMPARE(dragDifference(button.d_ptr->generatePixmap().toImage(), PaleBlue), QString());
    paints.take();

    QVERIFY(dragLeave(button));
    QCOMPARE(button.color(), Red);
    QCOMPARE(button.d_ptr->shownColor(), Red);
    QCOMPARE(paints.take(), 1);
    QCOMPARE(buttonDifference(imageOf(button), Red, true), QString());
    QCOMPARE(changes.size(), 0);
}

void TestQtColorButton::convertsOfferedColor_data()
{
    QTest::addColumn<QVariant>("data");
    QTest::addColumn<QColor>("offered");

    QTest::newRow("colour") << QVariant(PaleBlue) << PaleBlue;
    QTest::newRow("bytes") << QVariant(QByteArray("red")) << Red;
    QTest::newRow("text") << QVariant(QString("red")) << Red;
    QTest::newRow("text with alpha") << QVariant(QString("#660000ff")) << PaleBlue;
    QTest::newRow("text that names none") << QVariant(QString("no colour")) << QColor();
    QTest::newRow("what cannot be converted") << QVariant(QPoint(1, 2)) << QColor();
}

void TestQtColorButton::convertsOfferedColor()
{
    QFETCH(QVariant, data);
    QFETCH(QColor, offered);
    QtColorButton button;
    button.setColor(QColor(1, 2, 3));
    QSignalSpy changes(&button, SIGNAL(colorChanged(QColor)));
    const ForeignMime mime(data);

    QVERIFY(dragEnter(button, mime));
    QVERIFY(button.d_ptr->m_dragging);
    QCOMPARE(button.d_ptr->m_dragColor.isValid(), offered.isValid());
    QCOMPARE(button.d_ptr->shownColor(), offered);

    QVERIFY(drop(button, mime));
    QCOMPARE(button.color(), offered);
    QCOMPARE(changes.size(), 1);
}

void TestQtColorButton::refusesDragWithoutColor()
{
    QtColorButton button;
    button.resize(ButtonSize);
    button.setColor(Red);
    QMimeData mime;
    mime.setText("red");
    PaintCounter paints(&button);
    QVERIFY(isShown(button));
    paints.take();

    QVERIFY(!dragEnter(button, mime));
    QVERIFY(dragEnter(button, mime, true)); // stays as it came
    QVERIFY(!button.d_ptr->m_dragging);
    QVERIFY(!button.d_ptr->m_dragColor.isValid());
    QCOMPARE(button.d_ptr->shownColor(), Red);
    QCOMPARE(paints.take(), 0);
}

void TestQtColorButton::dropTakesColor()
{
    QtColorButton button;
    button.setColor(Red);
    QSignalSpy changes(&button, SIGNAL(colorChanged(QColor)));
    QColor colorAtSignal;
    connect(&button, &QtColorButton::colorChanged, this, [&] { colorAtSignal = button.color(); });
    const auto mime = colorMime(PaleBlue);
    QVERIFY(dragEnter(button, *mime));

    QVERIFY(drop(button, *mime));

    QVERIFY(!button.d_ptr->m_dragging);
    QCOMPARE(button.color(), PaleBlue);
    QCOMPARE(colorAtSignal, PaleBlue);
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.constFirst().constFirst().value<QColor>(), PaleBlue);
}

void TestQtColorButton::dropOfEqualColorDoesNothing()
{
    QtColorButton button;
    button.resize(ButtonSize);
    button.setColor(PaleBlue);
    const QSignalSpy changes(&button, SIGNAL(colorChanged(QColor)));
    PaintCounter paints(&button);
    QVERIFY(isShown(button));
    const auto mime = colorMime(PaleBlue);
    QVERIFY(dragEnter(button, *mime));
    paints.take();

    QVERIFY(drop(button, *mime));

    QVERIFY(!button.d_ptr->m_dragging);
    QCOMPARE(button.color(), PaleBlue);
    QCOMPARE(changes.size(), 0);
    QCOMPARE(paints.take(), 0);
}

void TestQtColorButton::paintsColorOverCheckerBoard_data()
{
    QTest::addColumn<QSize>("size");

    QTest::newRow("hardly more than frames") << QSize(14, 14);
    QTest::newRow("one square") << QSize(18, 18);
    QTest::newRow("two squares") << QSize(28, 28);
    QTest::newRow("odd") << QSize(33, 41);
    QTest::newRow("wide") << QSize(100, 25);
    QTest::newRow("high") << QSize(21, 77);
}

void TestQtColorButton::paintsColorOverCheckerBoard()
{
    QFETCH(QSize, size);
    QtColorButton button;
    button.resize(size);
    const QColor colors[] = {Red, PaleBlue, QColor(0, 255, 0, 0), QColor(10, 200, 30, 254)};

    for (const QColor &color : colors) {
        button.setColor(color);
        QCOMPARE(buttonDifference(imageOf(button), color, true), QString());
    }
}

void TestQtColorButton::paintsRandomButtonsLikePlainWay()
{
    QRandomGenerator random(73);
    QtColorButton button;
    for (int i = 0; i < 300; ++i) {
        const QSize size(random.bounded(14, 60), random.bounded(14, 60));
        const QColor color = randomColor(random);
        const bool checkered = random.bounded(2) == 0;
        button.resize(size);
        button.setColor(color);
        button.setBackgroundCheckered(checkered);

        const QString difference = buttonDifference(imageOf(button), color, checkered);

        QVERIFY2(difference.isEmpty(), qPrintable(QString("%1x%2 %3 %4: %5")
                                                      .arg(size.width())
                                                      .arg(size.height())
                                                      .arg(color.name(QColor::HexArgb))
                                                      .arg(checkered)
                                                      .arg(difference)));
    }
}

void TestQtColorButton::paintsFlatOpaqueColorWithinFrames()
{
    QtColorButton button;
    button.resize(ButtonSize);
    button.setColor(Red);
    const QImage image = imageOf(button);
    const QImage plain = plainButtonImage(ButtonSize);

    QCOMPARE(image.pixelColor(3, 15), plain.pixelColor(3, 15));
    QCOMPARE(image.pixelColor(4, 15).red(), 204); // 255 - 51
    QCOMPARE(image.pixelColor(5, 15).red(), 229); // 255 - 26
    QCOMPARE(image.pixelColor(6, 15), Red);
    QCOMPARE(image.pixelColor(53, 15), Red);
    QCOMPARE(image.pixelColor(54, 15).red(), 229);
    QCOMPARE(image.pixelColor(55, 15).red(), 204);
    QCOMPARE(image.pixelColor(56, 15), plain.pixelColor(56, 15));
}

void TestQtColorButton::translucentColorUncheckedShowsTheButton()
{
    QtColorButton button;
    button.resize(ButtonSize);
    button.setColor(PaleBlue);
    button.setBackgroundCheckered(false);

    const QImage image = imageOf(button);

    QCOMPARE(buttonDifference(image, PaleBlue, false), QString());
    QVERIFY(!buttonDifference(image, PaleBlue, true).isEmpty());
}

void TestQtColorButton::disabledButtonShowsNoColor()
{
    QtColorButton button;
    button.resize(ButtonSize);
    button.setColor(Red);
    button.setEnabled(false);

    QCOMPARE(imageOf(button), plainButtonImage(ButtonSize, false));
}

void TestQtColorButton::paintsInvalidColorAsItIs()
{
    QtColorButton button;
    button.resize(ButtonSize);

    // An invalid colour is black to a painter.
    QCOMPARE(buttonDifference(imageOf(button), Qt::black, true), QString());
    QCOMPARE(dragDifference(button.d_ptr->generatePixmap().toImage(), Qt::black), QString());
}

void TestQtColorButton::dragPictureIsCheckedRingAroundOpaqueCentre_data()
{
    QTest::addColumn<QColor>("color");

    QTest::newRow("opaque") << Red;
    QTest::newRow("translucent") << PaleBlue;
    QTest::newRow("transparent") << QColor(0, 255, 0, 0);
    QRandomGenerator random(24);
    for (int i = 0; i < 30; ++i) {
        const QColor color = randomColor(random);
        QTest::newRow(qPrintable(color.name(QColor::HexArgb))) << color;
    }
}

void TestQtColorButton::dragPictureIsCheckedRingAroundOpaqueCentre()
{
    QFETCH(QColor, color);
    QtColorButton button;
    button.setColor(color);

    const QImage picture = button.d_ptr->generatePixmap().toImage();

    QCOMPARE(picture.size(), QSize(24, 24));
    QCOMPARE(dragDifference(picture, color), QString());
}

void TestQtColorButton::dragPictureOfOpaqueColorIsFlat()
{
    QtColorButton button;
    button.setColor(Red);
    QImage flat(24, 24, QImage::Format_RGB32);
    flat.fill(Qt::black);
    for (int y = 1; y < 23; ++y) {
        for (int x = 1; x < 23; ++x) {
            flat.setPixelColor(x, y, Red);
        }
    }

    QCOMPARE(button.d_ptr->generatePixmap().toImage().convertToFormat(QImage::Format_RGB32), flat);
}

void TestQtColorButton::dragPictureIgnoresBackgroundCheckered()
{
    QtColorButton button;
    button.setColor(PaleBlue);
    const QImage checkered = button.d_ptr->generatePixmap().toImage();

    button.setBackgroundCheckered(false);

    QCOMPARE(button.d_ptr->generatePixmap().toImage(), checkered);
}

QTEST_MAIN(TestQtColorButton)
#include "tst_qtcolorbutton.moc"
