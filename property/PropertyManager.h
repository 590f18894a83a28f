#pragma once

#include <OvCustomControl/OvccExport.h>

#include <QColor>
#include <QWidget>

#include <memory>

namespace OvCc {

class LineTypeComboBox;
class LineWidthComboBox;
class QOvColorComboBox;

/// A small panel with the pickers for the properties of new objects, one below the other: colour,
/// lineweight and linetype.
class OVCC_EXPORT PropertyManager : public QWidget
{
    Q_OBJECT

public:
    explicit PropertyManager(QWidget *parent = nullptr);
    ~PropertyManager() override;

    /// The pickers; they belong to the panel.
    QOvColorComboBox *colorPicker() const;
    LineWidthComboBox *lineWeightPicker() const;
    LineTypeComboBox *lineTypePicker() const;

Q_SIGNALS:
    /// The signals of the three pickers, passed on.
    void colorChosen(int row, QColor color);
    void lineWeightChosen(int lineWeight);
    void lineTypeChosen(QString name);

private:
    struct Private;
    const std::unique_ptr<Private> m_d;
};

} // namespace OvCc
