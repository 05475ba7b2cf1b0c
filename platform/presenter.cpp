#include "platform/presenter.h"

#include "platform/desktop.h"

namespace platform {

Presenter* InstallPresenter(Presenter* presenter) {
  Presenter* before = Desktop::Get().presenter;
  Desktop::Get().presenter = presenter;
  InstallMessageBoxPresenter(presenter);
  return before;
}

Presenter* CurrentPresenter() { return Desktop::Get().presenter; }

Point CursorPosition() { return Desktop::Get().cursor; }

void SetCursorPosition(Point at) { Desktop::Get().cursor = at; }

}  // namespace platform
