#pragma once

class Rehearsal;

/// How the list of configurations is read, which ends most operations. Whether it was read.
bool rehearseRefresh(Rehearsal &rehearsal);
