// Coin: coin_bench [W1 ... W6] [--leaves N] [--repetitions N]

#include "coinpicks.h"
#include "coinpictures.h"
#include "coinscene.h"
#include "peermain.h"

int main(int argc, char** argv) {
    SoDB::init();
    SoInteraction::init();
    bench::DeliveryAction::initClass();
    return bench::peerMain<bench::CoinScene>(argc, argv, bench::measureCoinPicks,
                                             bench::measureCoinPictures);
}
