#pragma once
#include <QtCore/QtCore>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>
