// Standard input, output and error as a program expects them.
#pragma once

namespace korlit::host {

/// Opens those that whoever started the program has closed, so that no file or channel of ours is
/// taken for one. What is written to them then fails, as on a full disk, and so does what goes to a
/// pipe that nobody reads any more, or beyond the limit on file sizes: it ends no batch.
void openStandardStreams();

} // namespace korlit::host
