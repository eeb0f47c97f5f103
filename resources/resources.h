#pragma once

/// Makes the plug-in's icons and the schema of the backup document available under ":/".
///
/// A static library's resources register themselves only when somebody asks for them; whoever uses
/// one calls this first. Calling it again is harmless.
void initializeResources();
