#include "LayerBox.h"

#include <KcHost/KcHost.h>

#include <QLineEdit>

namespace {

constexpr int mostRows = 2000;

}

LayerBox::LayerBox(QWidget *parent)
    : LayerComboBox(parent)
{
    // The box gets its face with its first rows. Those of a new drawing are few, and so there is a
    // face even if no drawing that follows gets any rows.
    const auto drawing = KcHost::newDrawing();
    KcHost::setWorkingDatabase(drawing.get());
    slotUpdate();
    KcHost::setWorkingDatabase(nullptr);
    slotUpdate();
}

void LayerBox::refresh(int layerCount)
{
    m_hasRows = layerCount <= mostRows;
    if (m_hasRows) {
        slotUpdate();
        return;
    }
    clearListWidget();
    slotRowChanged(0);
    lineEdit()->show();
}

void LayerBox::showPopup()
{
    if (m_hasRows)
        LayerComboBox::showPopup();
    else
        emit searchWanted();
}
