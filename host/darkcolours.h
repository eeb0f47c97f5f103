#pragma once

/// Gives the application light text on a dark ground, to see how its windows look on such desktops.
void useDarkColours();
