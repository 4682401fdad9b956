#pragma once

#include "host/ravelineventvc.h"
#include "tasks/task.h"

#include <QPointer>

namespace ravelin {

class DashboardVCDelegate;
class DashboardVM;

// The first screen: the overall chart of task statuses over one section per
// status, each a horizontal strip of task cards. From here the worker refreshes,
// opens the filter, acknowledges, starts or unblocks a task, or opens its items.
class DashboardVC : public RavelinEventVC
{
    Q_OBJECT

public:
    explicit DashboardVC(QWidget *parent = nullptr);
    ~DashboardVC() override;

    // Set before the screen loads; the screen owns its view model.
    [[nodiscard]] DashboardVM *viewModel() const { return m_viewModel; }
    void setViewModel(DashboardVM *viewModel);
    [[nodiscard]] DashboardVCDelegate *vcDelegate() const { return m_vcDelegate; }
    void setVcDelegate(DashboardVCDelegate *delegate) { m_vcDelegate = delegate; }

    // Starts the refresh indicator and fetches the tasks.
    void pullToRefresh();

private:
    QPointer<DashboardVM> m_viewModel;
    DashboardVCDelegate *m_vcDelegate = nullptr;
};

} // namespace ravelin
