// What the windows include of the toolkit and of the language, compiled once.
#pragma once

#include <QtWidgets>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>
