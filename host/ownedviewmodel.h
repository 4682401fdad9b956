#pragma once

#include "api/fatalerror.h"

#include <QPointer>

namespace ravelin {

// A screen owns the view model it is given: the view model becomes the
// screen's child, and one the screen owned goes when another replaces it.
template<typename ViewModel>
void adoptViewModel(QPointer<ViewModel> &slot, ViewModel *viewModel, QObject *screen)
{
    if (slot == viewModel)
        return;
    if (slot && slot->parent() == screen)
        delete slot.data();
    slot = viewModel;
    if (viewModel)
        viewModel->setParent(screen);
}

// The screen's view model; a screen used without one stops the process.
template<typename ViewModel>
ViewModel &requiredViewModel(const QPointer<ViewModel> &slot, const char *message, const char *source)
{
    if (!slot)
        fatalError(QString::fromLatin1(message), source);
    return *slot;
}

} // namespace ravelin
