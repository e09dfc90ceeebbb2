#pragma once
#include "precompiled.h"

#include <QtCore/QtCore>
#include <QtWidgets/QtWidgets>
