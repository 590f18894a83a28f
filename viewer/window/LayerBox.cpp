#include "LayerBox.h"

#include <KcHost/KcHost.h>

#include <QLineEdit>

namespace Tessa {

namespace {

constexpr int mostRows = 2000;

}

void prepareFace(OvCc::LayerComboBox &box)
{
    // Those of a new drawing are few, and so there is a face even if no drawing that follows gets any
    // rows.
    const auto drawing = KcHost::newDrawing();
    KcHost::setWorkingDatabase(drawing.get());
    box.slotUpdate();
    KcHost::setWorkingDatabase(nullptr);
    box.slotUpdate();
}

bool showLayers(OvCc::LayerComboBox &box, int layerCount)
{
    if (layerCount <= mostRows) {
        box.slotUpdate();
        return true;
    }
    box.clearListWidget();
    box.slotRowChanged(0);
    box.lineEdit()->show();
    return false;
}

LayerBox::LayerBox(QWidget *parent)
    : LayerComboBox(parent)
{
    prepareFace(*this);
}

void LayerBox::refresh(int layerCount)
{
    m_hasRows = showLayers(*this, layerCount);
}

void LayerBox::showPopup()
{
    if (m_hasRows)
        LayerComboBox::showPopup();
    else
        emit searchWanted();
}

} // namespace Tessa
