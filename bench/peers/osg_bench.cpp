// OpenSceneGraph: osg_bench [W1 ... W6] [--leaves N] [--repetitions N]

#include "osgpictures.h"
#include "osgscene.h"
#include "peermain.h"

int main(int argc, char** argv) {
    return bench::peerMain<bench::OsgScene>(argc, argv, bench::measureOsgPicks,
                                            bench::measureOsgPictures);
}
