// Visuals of simulation objects, and meshes from visuals.
%include <zorOSG/CreateVisual.h>
%include <zorOSG/CreateTrimesh.h>
%include <zorOSG/ParticleVisuals.h>
%include <zorOSG/Trajectories.h>
