// A target that precompiles headers for others needs a source.
