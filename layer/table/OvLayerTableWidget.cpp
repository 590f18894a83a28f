#include "OvLayerTableWidget.h"

QStringList OvCc::headerList;
