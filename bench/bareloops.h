#pragma once

class IOManager;

/// The commands of the plug-in's operations and nothing else: what an operation cannot do without,
/// and what its cost is compared with.
namespace BareLoops {

/// A refresh of the list.
void refresh(IOManager *channel);
/// The collecting of a backup whose data comes in so many chunks.
void collect(IOManager *channel, int chunks);
/// The part of a save that fetches the chunks.
void download(IOManager *channel, int chunks);
/// The upload of so many full chunks.
void upload(IOManager *channel, int chunks);

} // namespace BareLoops
