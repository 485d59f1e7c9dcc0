#pragma once

#include "rig_forms.h"

class Bench;

/// What a rig is: its version, its lines, its tools with their channels as they are configured, and their
/// commands.
QByteArray describeRig(const Bench& bench, const RigForms& forms);
