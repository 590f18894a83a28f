// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <NsRc.h>

#include <QIcon>
#include <QList>
#include <QStringList>

#include <memory>

namespace OvCc {

/// A gallery for the host's ribbon with a drop-down that shows the same items all at once. The two
/// always have the same item checked: the one that the user pressed last, in either of them. A host
/// that acts on presses follows itemPressed() of this gallery and of popupGallery().
///
/// A subclass calls createGalleryItems() and then creatBaseGallery(), once each.
///
/// @ingroup ribbon
/// @image html BaseGallery.png
class OVCC_EXPORT BaseGallery : public NsRc::RibbonGallery
{
    Q_OBJECT

public:
    /// A gallery without items; see the class.
    explicit BaseGallery(QWidget *parent = nullptr);

    /// Deletes the drop-down and the items.
    ~BaseGallery() override;

    /// Makes the items, one for each of @p captions, in cells of 120 × 21 pixels; those beyond the
    /// end of @p icons have no picture.
    void createGalleryItems(const QStringList &captions, const QList<QIcon> &icons);

    /// Shows the items with the first one checked, 120 × 65 pixels in all and without captions, and
    /// makes the drop-down.
    void creatBaseGallery();

    /// The gallery in the drop-down; null before creatBaseGallery(). It belongs to this one.
    NsRc::RibbonGallery *popupGallery() const;

protected:
    /// The strings of signals and slots have the name of the ribbon's signal, without a namespace.
    using RibbonGalleryItem = NsRc::RibbonGalleryItem;

protected Q_SLOTS:
    /// Checks @p item here and in the drop-down; does nothing if it is checked here already.
    void itemChangedPressed(RibbonGalleryItem *item); // clazy:exclude=fully-qualified-moc-types

private:
    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
