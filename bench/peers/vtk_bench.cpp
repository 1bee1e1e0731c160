// VTK: vtk_bench [W1 ... W6] [--leaves N] [--repetitions N]

#include "peermain.h"
#include "vtkpicks.h"
#include "vtkpictures.h"
#include "vtkscene.h"

int main(int argc, char** argv) {
    return bench::peerMain<bench::VtkScene>(argc, argv, bench::measureVtkPicks,
                                            bench::measureVtkPictures);
}
