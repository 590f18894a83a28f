#pragma once

/// Told by the widgets when the user has changed a layer through one of them.
void ovSetLayerTableChanges();
