// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/LayerItemData.h>
#include <OvCustomControl/OvccExport.h>

#include <QLineEdit>

#include <memory>

namespace OvCc {

/// The face of the layer combo box: a read-only edit without text of its own that shows one layer's
/// on/off, freeze and lock images, its colour and its name. A name that is too long is cut, and has a
/// tool tip. There is no context menu: there is no text to act on.
///
/// @ingroup layers
/// @image html LayerEdit.png
class OVCC_EXPORT LayerEdit : public QLineEdit
{
    Q_OBJECT

public:
    /// A face that shows no layer yet.
    explicit LayerEdit(QWidget *parent);
    ~LayerEdit() override;

    /// Shows all parts of @p data.
    void setCurrentLayer(LayerItemData data);

    /// Shows a part of @p data. A status index also refreshes the images to its right.
    /// @param index a StatusIndex: OnStatus is for on/off, freeze and lock, FreezeStatus for freeze and
    ///              lock; any other number changes nothing
    void setLabelChange(int index, LayerItemData data);

    /// Shows @p text in the place of the name, and no pictures, until setCurrentLayer().
    void showText(const QString &text);

private:
    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
