#pragma once

/// Op types that read in every way there is; see plainscene.cpp for what they make.
///
/// - "Test.Stamp": each location of the input, with the attribute `stamp` set to the argument
///   `stamp`, and where the location's name is "a" also `mark` to the argument `mark`.
/// - "Test.Filter": the input without the locations named as the string argument `hide`.
/// - "Test.Far": the input; its root has the attribute `far`: the attributes of the location that
///   the string argument `path` names, and is passed on below.
/// - "Test.Throw": the input, but locations named as the string argument `name` throw.
/// - "Test.Swap": below the root, a location is passed on from the first input where its name is
///   before "b", and cooked from the second otherwise; it lists what either has.
/// - "Test.Late": the input, but with the argument `stamp` not 0 the root, and locations named "b"
///   that the input has, wait for something that another thread makes.
void registerTestOps();

/// Whether that thread rests: what "Test.Late" waits for is not made for now.
void setLateHeld(bool isHeld);
