#pragma once

/// @file
/// The options of `quorix-tools html`.

namespace CLI {
class App;
}

namespace quorix::tools {

/// Adds the command, which runs at the end of `program.parse` if it is named there.
void add_html(CLI::App& program);

}  // namespace quorix::tools
