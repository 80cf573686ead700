#pragma once
#include <QtWidgets/QtWidgets>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>
