#pragma once

#include <functional>
#include <string>

namespace velora::engine {

/// Runs the work in a process of its own and gives what it answered; empty when it ended otherwise, took more than ten
/// seconds or too much memory. The work sees this process's memory as it was and changes nothing in it.
std::string answer_of_process(const std::function<std::string()>& work);

}  // namespace velora::engine
