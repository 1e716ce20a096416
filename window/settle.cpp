#include "window/settle.h"

#include <QtWidgets>
#include <exception>
#include <thread>

namespace marovia {
namespace {

constexpr int kPatience = 250;  // ms; some desktops never give the focus back

class InputDropper : public QObject {
 public:
  InputDropper() { QCoreApplication::instance()->installEventFilter(this); }

  bool eventFilter(QObject*, QEvent* event) override {
    switch (event->type()) {
      case QEvent::Close:
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonRelease:
      case QEvent::MouseButtonDblClick:
      case QEvent::Wheel:
      case QEvent::KeyPress:
      case QEvent::KeyRelease:
      case QEvent::Shortcut:
      case QEvent::ShortcutOverride:
      case QEvent::ContextMenu:
      case QEvent::TouchBegin:
      case QEvent::TouchUpdate:
      case QEvent::TouchEnd:
      case QEvent::DragEnter:
      case QEvent::DragMove:
      case QEvent::Drop:
        return true;
      default:
        return false;
    }
  }
};

}  // namespace

void WorkBeside(const std::function<void()>& work) {
  const InputDropper dropper;
  QEventLoop loop;
  std::exception_ptr failure;
  std::thread beside([&] {
    try {
      work();
    } catch (...) {
      failure = std::current_exception();
    }
    QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
  });
  loop.exec();
  beside.join();
  if (failure) std::rethrow_exception(failure);
}

void TellThread(QObject& receiver, const std::function<void()>& news) {
  if (receiver.thread() == QThread::currentThread()) return news();
  std::exception_ptr failure;
  const auto guarded = [&] {
    try {
      news();
    } catch (...) {
      failure = std::current_exception();
    }
  };
  QMetaObject::invokeMethod(&receiver, guarded, Qt::BlockingQueuedConnection);
  if (failure) std::rethrow_exception(failure);
}

void Settle() {
  const InputDropper dropper;
  QGuiApplication::sync();
}

// The manager of the windows takes the dialog's frame away in its own time, and only then is the
// window told to paint what was behind it. To ask for the focus meanwhile may lose it.
void SettleInFront(const QWidget& window) {
  const InputDropper dropper;
  const QDeadlineTimer deadline(kPatience);
  while (!window.isActiveWindow() && !deadline.hasExpired())
    QCoreApplication::processEvents(QEventLoop::AllEvents, kPatience / 10);
  QGuiApplication::sync();
}

}  // namespace marovia
