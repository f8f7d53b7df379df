/*
 * Tells the thread sanitizer of Qt's locks and threads.
 *
 * The sanitizer follows what is compiled with it, and the functions of the C library. The Qt of a
 * distribution is not compiled with it and waits by system calls, so that every use of a QMutex
 * would be reported as a race. This file is linked into the programs of a build for the sanitizer,
 * where the functions below take the place of Qt's: each tells the sanitizer what it orders, and
 * calls the real one. What Qt calls within itself stays unseen; for what threads hand to each other
 * that way, the end of a thread, signals and events are watched.
 *
 * The sanitizer gets locks as locks, and not only as points in time: its reports name the locks
 * held, and it reports two locks that are taken in both orders.
 *
 * In use here are the functions that this repository calls. tryLockForRead() and the like are
 * missing: the sanitizer reports an unlock without a lock where they are needed.
 */

#include <QDeadlineTimer>
#include <QMetaObject>
#include <QMutex>
#include <QReadWriteLock>
#include <QSemaphore>
#include <QThread>
#include <QWaitCondition>

#include <algorithm>
#include <atomic>
#include <future>
#include <memory>
#include <utility>
#include <vector>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

namespace {

/// Any QMutex may be a QRecursiveMutex; one that is none hangs when it is locked twice.
constexpr unsigned Mutex = __tsan_mutex_write_reentrant;

/// Qt's function, which the one of this file hides.
template <typename Function>
Function *qtFunction(const char *symbol)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, symbol));
}

/// The read-write locks that this thread holds for writing: unlock() does not tell.
std::vector<const QReadWriteLock *> &writeLocks()
{
    thread_local std::vector<const QReadWriteLock *> locks;
    return locks;
}

void unlocks(QMutex *mutex)
{
    __tsan_mutex_pre_unlock(mutex, Mutex);
    __tsan_mutex_post_unlock(mutex, Mutex);
}

/// A wait gives the mutex away and takes it again, both within Qt.
template <typename Wait>
bool waitUnlocked(QMutex *mutex, Wait wait)
{
    unlocks(mutex);
    __tsan_mutex_pre_lock(mutex, Mutex);
    const bool woken = wait();
    __tsan_mutex_post_lock(mutex, Mutex, 0);
    return woken;
}

bool acquireIf(bool ended, const QThread *thread)
{
    if (ended) {
        __tsan_acquire(const_cast<QThread *>(thread));
    }
    return ended;
}

/// Threads that are sending something to objects of other threads at this moment.
std::atomic<int> s_sendings{0};

/// Those of this thread: a slot that is called at once may send too.
thread_local int s_ownSendings = 0;

/// Sends something to the thread that \p object lives on, or handles it there, as Qt decides.
/// Nothing is ordered but by the release, at the end: it is then that all is written which the
/// receiver will read.
template <typename Send>
auto sendWatched(const QObject *object, Send send)
{
    if (object->thread() == QThread::currentThread()) {
        return send();
    }
    const auto end = [thread = object->thread()](auto *) {
        __tsan_release(thread);
        --s_ownSendings;
        s_sendings.fetch_sub(1, std::memory_order_relaxed);
    };
    s_sendings.fetch_add(1, std::memory_order_relaxed);
    ++s_ownSendings;
    const std::unique_ptr<int, decltype(end)> sending(&s_ownSendings, end);
    return send();
}

/// Before a thread handles an event it takes over what the senders of such have left it. What one
/// of them is about to send may be that event, so it waits for the release. (It would wait for ever
/// for one that in turn waits for the event to be handled: no blocking connections, then.)
/// Qt calls this for each event; true would keep it from its receiver.
bool takeOverEvents(void **)
{
    while (s_sendings.load(std::memory_order_relaxed) > s_ownSendings) {
        QThread::yieldCurrentThread();
    }
    __tsan_acquire(QThread::currentThread());
    return false;
}

/// What QThread::create() makes, but watched: Qt's own runs the function inside of pthread_once(),
/// and all that Qt has the C library do goes unwatched.
class FunctionThread : public QThread
{
public:
    explicit FunctionThread(std::future<void> &&function)
        : m_function(std::move(function))
    {
    }

protected:
    void run() override
    {
        m_function.get();
        __tsan_release(this);
    }

private:
    std::future<void> m_function;
};

const bool s_watchesEvents =
    QInternal::registerCallback(QInternal::EventNotifyCallback, takeOverEvents);

} // namespace

// Mutexes, the recursive ones among them.

// One that comes to lie in the same place is another one.
QMutex::~QMutex()
{
    static const auto destroy = qtFunction<void(QMutex *)>("_ZN6QMutexD1Ev");
    __tsan_mutex_destroy(this, Mutex);
    destroy(this);
}

QRecursiveMutex::~QRecursiveMutex() = default;

void QMutex::lock() QT_MUTEX_LOCK_NOEXCEPT
{
    static const auto lock = qtFunction<void(QMutex *)>("_ZN6QMutex4lockEv");
    __tsan_mutex_pre_lock(this, Mutex);
    lock(this);
    __tsan_mutex_post_lock(this, Mutex, 0);
}

bool QMutex::tryLock(int timeout) QT_MUTEX_LOCK_NOEXCEPT
{
    static const auto tryLock = qtFunction<bool(QMutex *, int)>("_ZN6QMutex7tryLockEi");
    constexpr unsigned Try = Mutex | __tsan_mutex_try_lock;
    __tsan_mutex_pre_lock(this, Try);
    const bool locked = tryLock(this, timeout);
    __tsan_mutex_post_lock(this, locked ? Try : Try | __tsan_mutex_try_lock_failed, 0);
    return locked;
}

void QMutex::unlock() noexcept
{
    static const auto unlock = qtFunction<void(QMutex *)>("_ZN6QMutex6unlockEv");
    __tsan_mutex_pre_unlock(this, Mutex);
    unlock(this);
    __tsan_mutex_post_unlock(this, Mutex);
}

bool QWaitCondition::wait(QMutex *mutex, QDeadlineTimer deadline)
{
    static const auto wait = qtFunction<bool(QWaitCondition *, QMutex *, QDeadlineTimer)>(
        "_ZN14QWaitCondition4waitEP6QMutex14QDeadlineTimer");
    return waitUnlocked(mutex, [&] { return wait(this, mutex, deadline); });
}

bool QWaitCondition::wait(QMutex *mutex, unsigned long time)
{
    static const auto wait = qtFunction<bool(QWaitCondition *, QMutex *, unsigned long)>(
        "_ZN14QWaitCondition4waitEP6QMutexm");
    return waitUnlocked(mutex, [&] { return wait(this, mutex, time); });
}

// Read-write locks: readers are not ordered among themselves.

void QReadWriteLock::lockForRead()
{
    static const auto lock =
        qtFunction<void(QReadWriteLock *)>("_ZN14QReadWriteLock11lockForReadEv");
    __tsan_mutex_pre_lock(this, __tsan_mutex_read_lock);
    lock(this);
    __tsan_mutex_post_lock(this, __tsan_mutex_read_lock, 0);
}

void QReadWriteLock::lockForWrite()
{
    static const auto lock =
        qtFunction<void(QReadWriteLock *)>("_ZN14QReadWriteLock12lockForWriteEv");
    __tsan_mutex_pre_lock(this, 0);
    lock(this);
    __tsan_mutex_post_lock(this, 0, 0);
    writeLocks().push_back(this);
}

void QReadWriteLock::unlock()
{
    static const auto unlock = qtFunction<void(QReadWriteLock *)>("_ZN14QReadWriteLock6unlockEv");
    std::vector<const QReadWriteLock *> &written = writeLocks();
    const auto found = std::find(written.begin(), written.end(), this);
    const unsigned kind = found == written.end() ? __tsan_mutex_read_lock : 0;
    if (found != written.end()) {
        written.erase(found);
    }
    __tsan_mutex_pre_unlock(this, kind);
    unlock(this);
    __tsan_mutex_post_unlock(this, kind);
}

// Semaphores have no owner: a release is seen by all that acquire later.

void QSemaphore::release(int n)
{
    static const auto release = qtFunction<void(QSemaphore *, int)>("_ZN10QSemaphore7releaseEi");
    __tsan_release(this);
    release(this, n);
}

void QSemaphore::acquire(int n)
{
    static const auto acquire = qtFunction<void(QSemaphore *, int)>("_ZN10QSemaphore7acquireEi");
    acquire(this, n);
    __tsan_acquire(this);
}

bool QSemaphore::tryAcquire(int n)
{
    return tryAcquire(n, 0);
}

bool QSemaphore::tryAcquire(int n, int timeout)
{
    static const auto tryAcquire =
        qtFunction<bool(QSemaphore *, int, int)>("_ZN10QSemaphore10tryAcquireEii");
    const bool acquired = tryAcquire(this, n, timeout);
    if (acquired) {
        __tsan_acquire(this);
    }
    return acquired;
}

// Threads: whoever has waited for the end of one sees all that it did. So does who has asked for
// it, if run() tells as its last deed: Qt says ended before anything can be told for it. The start
// is seen without help.

QThread *QThread::createThreadImpl(std::future<void> &&function)
{
    return new FunctionThread(std::move(function));
}

void QThread::start(Priority priority)
{
    static const auto start =
        qtFunction<void(QThread *, Priority)>("_ZN7QThread5startENS_8PriorityE");
    // finished() comes out of the thread itself, before Qt calls it ended.
    const auto end = std::make_shared<QMetaObject::Connection>();
    *end = connect(this, &QThread::finished, [this, end] {
        disconnect(*end);
        __tsan_release(this);
    });
    start(this, priority);
}

bool QThread::wait(QDeadlineTimer deadline)
{
    static const auto wait =
        qtFunction<bool(QThread *, QDeadlineTimer)>("_ZN7QThread4waitE14QDeadlineTimer");
    return acquireIf(wait(this, deadline), this);
}

bool QThread::wait(unsigned long time)
{
    static const auto wait = qtFunction<bool(QThread *, unsigned long)>("_ZN7QThread4waitEm");
    return acquireIf(wait(this, time), this);
}

bool QThread::isFinished() const
{
    static const auto isFinished = qtFunction<bool(const QThread *)>("_ZNK7QThread10isFinishedEv");
    return acquireIf(isFinished(this), this);
}

bool QThread::isRunning() const
{
    static const auto isRunning = qtFunction<bool(const QThread *)>("_ZNK7QThread9isRunningEv");
    return !acquireIf(!isRunning(this), this);
}

// What a thread sends for or to an object that lives on another one: signals and calls. The order
// comes to hold for that thread, not for the one receiver, which for signals is not known here.

void QMetaObject::activate(QObject *sender, const QMetaObject *type, int signal, void **arguments)
{
    static const auto activate = qtFunction<void(QObject *, const QMetaObject *, int, void **)>(
        "_ZN11QMetaObject8activateEP7QObjectPKS_iPPv");
    const auto send = [&] { activate(sender, type, signal, arguments); };
    if (qstrncmp(type->className(), "QDBus", 5) == 0) {
        send(); // Qt's own, with blocking connections
    } else {
        sendWatched(sender, send);
    }
}

bool QMetaObject::invokeMethodImpl(QObject *object, QtPrivate::QSlotObjectBase *slot,
                                   Qt::ConnectionType type, void *result)
{
    static const auto invoke =
        qtFunction<bool(QObject *, QtPrivate::QSlotObjectBase *, Qt::ConnectionType, void *)>(
            "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseE"
            "N2Qt14ConnectionTypeEPv");
    return sendWatched(object, [&] { return invoke(object, slot, type, result); });
}
