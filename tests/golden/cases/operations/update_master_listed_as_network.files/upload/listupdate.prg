network
