// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include <QCoreApplication>

// Texts that several classes and forms show, marked for lupdate in the context of each: what makes
// them is told a context when the program runs.

namespace {

struct ColorComboBoxTexts
{
    Q_DECLARE_TR_FUNCTIONS(OvCc::ColorComboBox)
    [[maybe_unused]] static constexpr const char *texts[] = {
#include "Colors.inc"
    };
};

struct QOvColorComboBoxTexts
{
    Q_DECLARE_TR_FUNCTIONS(OvCc::QOvColorComboBox)
    [[maybe_unused]] static constexpr const char *texts[] = {
#include "Colors.inc"
    };
};

struct LineWidthComboBoxTexts
{
    Q_DECLARE_TR_FUNCTIONS(OvCc::LineWidthComboBox)
    [[maybe_unused]] static constexpr const char *texts[] = {
#include "Inches.inc"
#include "Millimetres.inc"
    };
};

struct LayerDelegateTexts
{
    Q_DECLARE_TR_FUNCTIONS(OvCc::LayerDelegate)
    [[maybe_unused]] static constexpr const char *texts[] = {
#include "Millimetres.inc"
#include "TrueInches.inc"
    };
};

struct LineWeightDialogTexts
{
    Q_DECLARE_TR_FUNCTIONS(LineWeightDialog)
    [[maybe_unused]] static constexpr const char *texts[] = {
#include "Help.inc"
#include "Inches.inc"
#include "Millimetres.inc"
    };
};

struct LayerLWidthDialogTexts
{
    Q_DECLARE_TR_FUNCTIONS(LayerLWidthDialog)
    [[maybe_unused]] static constexpr const char *texts[] = {
#include "Help.inc"
#include "Millimetres.inc"
    };
};

struct LayerLTypeDialogTexts
{
    Q_DECLARE_TR_FUNCTIONS(LayerLTypeDialog)
    [[maybe_unused]] static constexpr const char *texts[] = {
#include "Help.inc"
    };
};

} // namespace
