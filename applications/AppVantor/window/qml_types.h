#pragma once

/// Registers the window's types in the QML module "AppVantor" 1.0. May be called again.
void registerQmlTypes();
