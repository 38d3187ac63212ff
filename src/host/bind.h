#pragma once

#include <CLI/CLI.hpp>

#include <memory>

#include "host/commands.h"

namespace velora {

/// Lets the command, when it is named, run `body` with the options that were read into `options`.
template <class Options, class Body>
void bind(CLI::App& command, CommandBody& chosen, const std::shared_ptr<Options>& options, Body body)
{
    command.callback(
        [&chosen, options, body] { chosen = [options, body](Host& host) { return body(host, *options); }; });
}

}  // namespace velora
