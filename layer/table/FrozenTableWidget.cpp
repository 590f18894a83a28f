#include "FrozenTableWidget.h"

namespace OvCc {

FrozenTableWidget::FrozenTableWidget(QWidget *parent)
    : QTableView(parent)
{
}

FrozenTableWidget::~FrozenTableWidget() = default;

void FrozenTableWidget::mousePressEvent(QMouseEvent *event)
{
    setFocus();
    QTableView::mousePressEvent(event);
}

} // namespace OvCc
