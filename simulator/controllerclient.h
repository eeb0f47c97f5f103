#pragma once

#include "simulator/download.h"
#include "simulator/upload.h"

/// What the controller remembers of one client from one command to the next: nobody finishes the
/// transfers of another or profits from the password of another.
struct ControllerClient
{
    /// The password by which the active configuration was made changeable.
    enum class Presented { Nothing, Password, SuperPassword };

    Presented presented = Presented::Nothing;
    int presentedInEra = 0; ///< see ControllerSession::forgetPresented()
    Download download;
    Upload upload;
};
