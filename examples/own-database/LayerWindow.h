// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/LayerComboBox.h>
#include <OvCustomControl/LayerLink.h>
#include <OvCustomControl/LayerManager.h>

#include <QWidget>

class KcDbDatabase;

/// The layers of the working drawing in a layer box and a layer manager, which follow each other and
/// every other program that has the file. What the user asks for is done to the drawing.
class LayerWindow : public QWidget
{
    Q_OBJECT

public:
    explicit LayerWindow(KcDbDatabase &drawing);
    ~LayerWindow() override;

private:
    void followWishes(KcDbDatabase &drawing);

    OvCc::LayerComboBox m_box;
    OvCc::LayerManager m_manager;
    OvCc::LayerLink m_link;
};
