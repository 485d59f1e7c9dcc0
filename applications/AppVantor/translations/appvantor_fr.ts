<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name></name>
    <message id="maintenance_panel_Inputs">
        <source></source>
        <translation>Entrées</translation>
    </message>
    <message id="maintenance_panel_Outputs">
        <source></source>
        <translation>Sorties</translation>
    </message>
    <message id="connected">
        <source></source>
        <translation>Connecté</translation>
    </message>
    <message id="not_connected">
        <source></source>
        <translation>Non connecté</translation>
    </message>
    <message id="tools_connecting">
        <source></source>
        <translation>Connexion…</translation>
    </message>
    <message id="tools_closed">
        <source></source>
        <translation>Fermé</translation>
    </message>
    <message id="lamp_on">
        <source></source>
        <translation>allumé</translation>
    </message>
    <message id="lamp_off">
        <source></source>
        <translation>éteint</translation>
    </message>
    <message id="panel_live">
        <source></source>
        <translation>En direct</translation>
    </message>
    <message id="panel_live_hint">
        <source></source>
        <translation>Relire les valeurs en continu</translation>
    </message>
    <message id="panel_refresh">
        <source></source>
        <translation>Actualiser</translation>
    </message>
    <message id="panel_refresh_hint">
        <source></source>
        <translation>Relire toutes les valeurs (F5)</translation>
    </message>
    <message id="panel_not_connected">
        <source></source>
        <translation>L’appareil n’est pas connecté. Les valeurs seront lues dès son retour.</translation>
    </message>
    <message id="panel_not_connected_because">
        <source></source>
        <translation>L’appareil n’est pas connecté : %1. Les valeurs seront lues dès son retour.</translation>
    </message>
    <message id="panel_no_public_channels">
        <source></source>
        <translation>Cet outil n’a pas de voie publique. Donnez à une voie "visibility": "public" dans la configuration pour la voir ici.</translation>
    </message>
    <message id="page_none">
        <source></source>
        <translation>Le plugin « %1 » n’a pas de page de maintenance.</translation>
    </message>
    <message id="page_broken">
        <source></source>
        <translation>La page de maintenance du plugin « %1 » contient des erreurs :
%2</translation>
    </message>
    <message id="page_no_tool">
        <source></source>
        <translation>Cet outil n’existe pas. Choisissez un des outils à gauche.</translation>
    </message>
    <message id="tools_title">
        <source></source>
        <translation>Outils</translation>
    </message>
    <message id="tools_detail" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%1 · %n voie</numerusform>
            <numerusform>%1 · %n voies</numerusform>
        </translation>
    </message>
    <message id="tools_empty">
        <source></source>
        <translation>Il n’y a pas d’outil. Ajoutez-en un sous « tools » dans le fichier de configuration.</translation>
    </message>
    <message id="tools_dark">
        <source></source>
        <translation>Sombre</translation>
    </message>
    <message id="board_filter">
        <source></source>
        <translation>Filtrer</translation>
    </message>
    <message id="board_freeze">
        <source></source>
        <translation>Figer</translation>
    </message>
    <message id="board_resume">
        <source></source>
        <translation>Reprendre</translation>
    </message>
    <message id="board_freeze_hint">
        <source></source>
        <translation>Arrêter les courbes pour les examiner</translation>
    </message>
    <message id="board_not_connected">
        <source></source>
        <translation>L’appareil n’est pas connecté.</translation>
    </message>
    <message id="board_not_connected_because">
        <source></source>
        <translation>L’appareil n’est pas connecté : %1.</translation>
    </message>
    <message id="board_connecting">
        <source></source>
        <translation>Connexion à l’appareil en cours…</translation>
    </message>
    <message id="board_unknown">
        <source></source>
        <translation>inconnue</translation>
    </message>
    <message id="board_empty">
        <source></source>
        <translation>L’appareil n’a pas de ligne. Nommez-les sous « device », « lines » dans le fichier de configuration.</translation>
    </message>
    <message id="board_no_match">
        <source></source>
        <translation>Aucune ligne ne contient « %1 » dans son nom ou ses voies. Effacez le filtre pour toutes les voir.</translation>
    </message>
    <message id="form_title">
        <source></source>
        <translation>Commande</translation>
    </message>
    <message id="form_command">
        <source></source>
        <translation>Commande</translation>
    </message>
    <message id="form_run">
        <source></source>
        <translation>Lancer</translation>
    </message>
    <message id="form_run_hint">
        <source></source>
        <translation>Lancer la commande (Ctrl+Entrée)</translation>
    </message>
    <message id="form_default">
        <source></source>
        <translation>par défaut : %1</translation>
    </message>
    <message id="form_not_given">
        <source></source>
        <translation>non fourni</translation>
    </message>
    <message id="form_channel">
        <source></source>
        <translation>une voie de l’outil</translation>
    </message>
    <message id="form_sections">
        <source></source>
        <translation>Sections</translation>
    </message>
    <message id="form_sections_hint">
        <source></source>
        <translation>Plus, en objet JSON</translation>
    </message>
    <message id="form_sections_expected">
        <source></source>
        <translation>Sections : un objet JSON est attendu, {"nom": [ … ]}</translation>
    </message>
    <message id="form_sections_broken">
        <source></source>
        <translation>Sections : pas de JSON à partir du caractère %1</translation>
    </message>
    <message id="form_no_command">
        <source></source>
        <translation>Choisissez un outil pour voir ses commandes.</translation>
    </message>
    <message id="orders_title">
        <source></source>
        <translation>Ordres</translation>
    </message>
    <message id="orders_stop">
        <source></source>
        <translation>Arrêter</translation>
    </message>
    <message id="orders_stop_hint">
        <source></source>
        <translation>Arrêter cet ordre (Suppr)</translation>
    </message>
    <message id="orders_stop_all">
        <source></source>
        <translation>Tout arrêter</translation>
    </message>
    <message id="orders_clear">
        <source></source>
        <translation>Effacer</translation>
    </message>
    <message id="orders_state_running">
        <source></source>
        <translation>en cours</translation>
    </message>
    <message id="orders_state_listening">
        <source></source>
        <translation>à l’écoute</translation>
    </message>
    <message id="orders_state_done">
        <source></source>
        <translation>terminé</translation>
    </message>
    <message id="orders_state_failed">
        <source></source>
        <translation>échoué</translation>
    </message>
    <message id="orders_state_stopped">
        <source></source>
        <translation>arrêté</translation>
    </message>
    <message id="orders_state_problem">
        <source></source>
        <translation>problème</translation>
    </message>
    <message id="orders_events" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%n événement, à %1</numerusform>
            <numerusform>%n événements, le dernier à %1</numerusform>
        </translation>
    </message>
    <message id="orders_lost" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%n événement perdu</numerusform>
            <numerusform>%n événements perdus</numerusform>
        </translation>
    </message>
    <message id="orders_rejected" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%n réponse rejetée</numerusform>
            <numerusform>%n réponses rejetées</numerusform>
        </translation>
    </message>
    <message id="orders_empty">
        <source></source>
        <translation>Aucun ordre pour l’instant. Choisissez une commande et appuyez sur Lancer.</translation>
    </message>
    <message id="board_resume_hint">
        <source></source>
        <translation>Laisser défiler les courbes</translation>
    </message>
    <message id="board_held">
        <source></source>
        <translation>Courbes figées</translation>
    </message>
    <message id="panel_too_narrow">
        <source></source>
        <translation>La page est trop étroite pour certaines de ses valeurs. Élargissez-la.</translation>
    </message>
    <message id="board_past">
        <source></source>
        <translation>Dans le passé</translation>
    </message>
    <message id="courses_title">
        <source></source>
        <translation>Courbes des lignes</translation>
    </message>
    <message id="courses_hint">
        <source></source>
        <translation>Molette : zoom · glisser : déplacer · 1, 2 : curseurs · F : tout · L : direct · Espace : figer</translation>
    </message>
    <message id="cursors_one">
        <source></source>
        <translation>Curseur %1</translation>
    </message>
    <message id="cursors_between">
        <source></source>
        <translation>1–2 : %1</translation>
    </message>
    <message id="measure_high">
        <source></source>
        <translation>haut</translation>
    </message>
    <message id="measure_low">
        <source></source>
        <translation>bas</translation>
    </message>
    <message id="measure_width">
        <source></source>
        <translation>%1 pendant %2</translation>
    </message>
    <message id="measure_period">
        <source></source>
        <translation>période %1</translation>
    </message>
    <message id="measure_duty">
        <source></source>
        <translation>rapport cyclique %1 %</translation>
    </message>
    <message id="board_driven">
        <source></source>
        <translation>pilotée</translation>
    </message>
    <message id="page_click_failed">
        <source></source>
        <translation>%1 : %2</translation>
    </message>
    <message id="page_dismiss">
        <source></source>
        <translation>Masquer</translation>
    </message>
    <message id="board_waiting">
        <source></source>
        <translation>en attente</translation>
    </message>
    <message id="board_old">
        <source></source>
        <translation>ancienne</translation>
    </message>
    <message id="board_failed">
        <source></source>
        <translation>en échec</translation>
    </message>
    <message id="board_blinking">
        <source></source>
        <translation>◐ clignote</translation>
    </message>
    <message id="orders_page">
        <source></source>
        <translation>page · %1</translation>
    </message>
    <message id="orders_reads" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%n lecture de la page</numerusform>
            <numerusform>%n lectures de la page</numerusform>
        </translation>
    </message>
    <message id="orders_reads_failed" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%n en échec</numerusform>
            <numerusform>%n en échec</numerusform>
        </translation>
    </message>
    <message id="tools_all_off">
        <source></source>
        <translation>Tout éteindre</translation>
    </message>
    <message id="tools_all_off_hint">
        <source></source>
        <translation>Éteindre tout ce que les outils pilotent</translation>
    </message>
    <message id="form_needed">
        <source></source>
        <translation>Nécessaire : sans cela, la commande ne fait rien.</translation>
    </message>
    <message id="glyph_analogue">
        <source></source>
        <translation>Valeur analogique</translation>
    </message>
    <message id="form_no_channel">
        <source></source>
        <translation>L’outil n’a pas de voie « %1 ».</translation>
    </message>
    <message id="orders_show_events">
        <source></source>
        <translation>Événements</translation>
    </message>
    <message id="orders_show_events_hint">
        <source></source>
        <translation>Montrer les événements avec leurs heures (Entrée)</translation>
    </message>
    <message id="events_title" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%1 : %n événement</numerusform>
            <numerusform>%1 : %n événements</numerusform>
        </translation>
    </message>
    <message id="events_copy">
        <source></source>
        <translation>Copier</translation>
    </message>
    <message id="events_copy_hint">
        <source></source>
        <translation>Copier tous les événements, séparés par des virgules</translation>
    </message>
    <message id="events_save">
        <source></source>
        <translation>Enregistrer</translation>
    </message>
    <message id="events_close">
        <source></source>
        <translation>Fermer</translation>
    </message>
    <message id="save_file">
        <source></source>
        <translation>Fichier</translation>
    </message>
    <message id="save_done">
        <source></source>
        <translation>Enregistré sous %1</translation>
    </message>
    <message id="save_exists">
        <source></source>
        <translation>%1 existe déjà ; enregistrez encore une fois pour le remplacer.</translation>
    </message>
    <message id="save_replace">
        <source></source>
        <translation>Remplacer</translation>
    </message>
    <message id="save_cancel">
        <source></source>
        <translation>Annuler</translation>
    </message>
    <message id="save_no_file">
        <source></source>
        <translation>« %1 » ne désigne pas un fichier ordinaire.</translation>
    </message>
    <message id="save_failed">
        <source></source>
        <translation>Impossible d’écrire %1 : %2</translation>
    </message>
    <message id="fold_hide_tools">
        <source></source>
        <translation>Replier les outils (Ctrl+1)</translation>
    </message>
    <message id="fold_show_tools">
        <source></source>
        <translation>Montrer les outils (Ctrl+1)</translation>
    </message>
    <message id="fold_hide_page">
        <source></source>
        <translation>Replier la page (Ctrl+2)</translation>
    </message>
    <message id="fold_show_page">
        <source></source>
        <translation>Montrer la page (Ctrl+2)</translation>
    </message>
    <message id="fold_hide_lower">
        <source></source>
        <translation>Replier commande et ordres (Ctrl+3)</translation>
    </message>
    <message id="fold_show_lower">
        <source></source>
        <translation>Montrer commande et ordres (Ctrl+3)</translation>
    </message>
    <message id="lines_menu">
        <source></source>
        <translation>Lignes</translation>
    </message>
    <message id="lines_menu_hint">
        <source></source>
        <translation>Masquer, déplacer et grouper les lignes</translation>
    </message>
    <message id="lines_hide">
        <source></source>
        <translation>Masquer les lignes choisies</translation>
    </message>
    <message id="lines_show_hidden" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Montrer %n ligne masquée</numerusform>
            <numerusform>Montrer %n lignes masquées</numerusform>
        </translation>
    </message>
    <message id="lines_up">
        <source></source>
        <translation>Vers le haut</translation>
    </message>
    <message id="lines_down">
        <source></source>
        <translation>Vers le bas</translation>
    </message>
    <message id="lines_group">
        <source></source>
        <translation>Grouper par nom</translation>
    </message>
    <message id="lines_ungroup">
        <source></source>
        <translation>Ne plus grouper</translation>
    </message>
    <message id="lines_trigger">
        <source></source>
        <translation>Déclencheur : ↑ ↓ ↕ 1 0</translation>
    </message>
    <message id="trigger_text" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Déclencheur %1 : %n fois</numerusform>
            <numerusform>Déclencheur %1 : %n fois</numerusform>
        </translation>
    </message>
    <message id="trigger_mode">
        <source></source>
        <translation>Où les courbes s’arrêtent</translation>
    </message>
    <message id="trigger_at">
        <source></source>
        <translation>arrêter là</translation>
    </message>
    <message id="trigger_around">
        <source></source>
        <translation>arrêter autour</translation>
    </message>
    <message id="trigger_from">
        <source></source>
        <translation>arrêter après</translation>
    </message>
    <message id="trigger_none">
        <source></source>
        <translation>compter seulement</translation>
    </message>
    <message id="trigger_clear">
        <source></source>
        <translation>Effacer</translation>
    </message>
    <message id="selection_measure" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%n front · %1 à %2 · moyenne %3</numerusform>
            <numerusform>%n fronts · %1 à %2 · moyenne %3</numerusform>
        </translation>
    </message>
    <message id="tools_help">
        <source></source>
        <translation>Aide</translation>
    </message>
    <message id="tools_help_hint">
        <source></source>
        <translation>Touches, manuel et versions (F1)</translation>
    </message>
    <message id="export_courses">
        <source></source>
        <translation>Exporter : CSV, VCD, SVG, PNG</translation>
    </message>
    <message id="export_kinds">
        <source></source>
        <translation>Le nom doit finir par .csv, .vcd, .svg ou .png.</translation>
    </message>
    <message id="record_begin">
        <source></source>
        <translation>Enregistrer une trace</translation>
    </message>
    <message id="record_stop">
        <source></source>
        <translation>Arrêter la trace</translation>
    </message>
    <message id="record_runs">
        <source></source>
        <translation>Une trace est déjà enregistrée.</translation>
    </message>
    <message id="record_begun">
        <source></source>
        <translation>Enregistrement dans %1</translation>
    </message>
    <message id="split_tools">
        <source></source>
        <translation>Largeur des outils</translation>
    </message>
    <message id="split_page">
        <source></source>
        <translation>Largeur de la page</translation>
    </message>
    <message id="split_lower">
        <source></source>
        <translation>Hauteur de la commande et des ordres</translation>
    </message>
    <message id="split_command">
        <source></source>
        <translation>Largeur de la commande</translation>
    </message>
    <message id="close_title">
        <source></source>
        <translation>Fermer la fenêtre ?</translation>
    </message>
    <message id="close_running" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%n ordre est en cours et serait arrêté.</numerusform>
            <numerusform>%n ordres sont en cours et seraient arrêtés.</numerusform>
        </translation>
    </message>
    <message id="close_blinking">
        <source></source>
        <translation>Ces lignes clignotent ; cela cesserait, et chacune resterait comme elle est alors : %1.</translation>
    </message>
    <message id="close_blinking_ends">
        <source></source>
        <translation>Ces lignes clignotent ; cela cesserait : %1.</translation>
    </message>
    <message id="close_simulated">
        <source></source>
        <translation>Rien ne reste actif : les lignes simulées disparaissent avec le banc.</translation>
    </message>
    <message id="close_released">
        <source></source>
        <translation>Une ligne relâchée garde ou non son niveau, selon son pilote.</translation>
    </message>
    <message id="close_recording">
        <source></source>
        <translation>Une trace est enregistrée ; elle se terminerait.</translation>
    </message>
    <message id="close_nothing_on">
        <source></source>
        <translation>Aucune sortie n’est active.</translation>
    </message>
    <message id="close_stays_on">
        <source></source>
        <translation>Ces sorties sont actives et le resteraient : %1.</translation>
    </message>
    <message id="close_goes_off">
        <source></source>
        <translation>Ces sorties seraient éteintes : %1.</translation>
    </message>
    <message id="close_more" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%1 et %n autre</numerusform>
            <numerusform>%1 et %n autres</numerusform>
        </translation>
    </message>
    <message id="close_stop">
        <source></source>
        <translation>Tout arrêter et fermer</translation>
    </message>
    <message id="close_anyway">
        <source></source>
        <translation>Fermer</translation>
    </message>
    <message id="help_title">
        <source></source>
        <translation>Touches</translation>
    </message>
    <message id="help_space">
        <source></source>
        <translation>Espace</translation>
    </message>
    <message id="help_f1">
        <source></source>
        <translation>cette aide</translation>
    </message>
    <message id="help_f5">
        <source></source>
        <translation>relit la page</translation>
    </message>
    <message id="help_f6">
        <source></source>
        <translation>le volet suivant, le précédent</translation>
    </message>
    <message id="help_find">
        <source></source>
        <translation>filtre les lignes ; Échap efface le filtre</translation>
    </message>
    <message id="help_fold">
        <source></source>
        <translation>replient outils, page, commande et ordres</translation>
    </message>
    <message id="help_run">
        <source></source>
        <translation>lance la commande de n’importe où</translation>
    </message>
    <message id="help_zoom">
        <source></source>
        <translation>plus et moins de détail, tout, suivre le présent</translation>
    </message>
    <message id="help_freeze">
        <source></source>
        <translation>sur les courbes : les fige ou les relance ; sur la liste : commute la ligne</translation>
    </message>
    <message id="help_cursors">
        <source></source>
        <translation>curseurs au pointeur, de front en front, les enlever</translation>
    </message>
    <message id="help_trigger">
        <source></source>
        <translation>le déclencheur suivant de la ligne</translation>
    </message>
    <message id="help_choose">
        <source></source>
        <translation>plusieurs lignes, dont ← et → suivent les fronts</translation>
    </message>
    <message id="help_lines">
        <source></source>
        <translation>masquer, grouper et déplacer des lignes</translation>
    </message>
    <message id="help_row_height">
        <source></source>
        <translation>la hauteur des rangées</translation>
    </message>
    <message id="help_files">
        <source></source>
        <translation>exporter les courbes, enregistrer une trace</translation>
    </message>
    <message id="help_manual">
        <source></source>
        <translation>Le manuel : « man appvantor », ou docs/user-guide.md du projet.</translation>
    </message>
    <message id="failure_wrongInvocation">
        <source></source>
        <translation>appel incorrect : %1</translation>
    </message>
    <message id="failure_refusedByCommand">
        <source></source>
        <translation>refusé par la commande : %1</translation>
    </message>
    <message id="failure_nothingSent">
        <source></source>
        <translation>rien n’a été envoyé : %1</translation>
    </message>
    <message id="failure_replyRejected">
        <source></source>
        <translation>réponse rejetée : %1</translation>
    </message>
    <message id="failure_refusedByDevice">
        <source></source>
        <translation>refusé par l’appareil : %1</translation>
    </message>
    <message id="failure_deviceUnreachable">
        <source></source>
        <translation>appareil injoignable : %1</translation>
    </message>
    <message id="failure_timedOut">
        <source></source>
        <translation>délai dépassé : %1</translation>
    </message>
    <message id="failure_stopped">
        <source></source>
        <translation>arrêté : %1</translation>
    </message>
    <message id="failure_toolClosed">
        <source></source>
        <translation>outil fermé : %1</translation>
    </message>
    <message id="command_setValue">
        <source></source>
        <translation>Donner un état à une ligne</translation>
    </message>
    <message id="command_switchValue">
        <source></source>
        <translation>Inverser l’état d’une ligne</translation>
    </message>
    <message id="command_getValue">
        <source></source>
        <translation>Lire une ligne</translation>
    </message>
    <message id="command_startListening">
        <source></source>
        <translation>Écouter les événements d’une voie</translation>
    </message>
    <message id="command_init">
        <source></source>
        <translation>Donner aux lignes leurs valeurs initiales</translation>
    </message>
    <message id="command_listenToAll">
        <source></source>
        <translation>Écouter toutes les lignes binaires</translation>
    </message>
    <message id="command_stopTheCommand">
        <source></source>
        <translation>Arrêter l’ordre en cours</translation>
    </message>
    <message id="command_stopListening">
        <source></source>
        <translation>Arrêter l’écoute</translation>
    </message>
    <message id="parameter_channel">
        <source></source>
        <translation>Voie de l’outil</translation>
    </message>
    <message id="parameter_value">
        <source></source>
        <translation>Valeur</translation>
    </message>
    <message id="parameter_state">
        <source></source>
        <translation>ON, OFF, PULSE ou BLINK</translation>
    </message>
    <message id="parameter_duration">
        <source></source>
        <translation>Durée du cycle, en ms</translation>
    </message>
    <message id="parameter_dutyCycle">
        <source></source>
        <translation>Rapport cyclique, en %</translation>
    </message>
    <message id="parameter_edge">
        <source></source>
        <translation>RE : front montant, FE : descendant, HL : niveau haut, LL : bas</translation>
    </message>
    <message id="file_menu">
        <source></source>
        <translation>Fichier</translation>
    </message>
    <message id="file_menu_hint">
        <source></source>
        <translation>Ouvrir et recharger des configurations</translation>
    </message>
    <message id="file_open">
        <source></source>
        <translation>Ouvrir une configuration…</translation>
    </message>
    <message id="file_reload">
        <source></source>
        <translation>Recharger</translation>
    </message>
    <message id="open_title">
        <source></source>
        <translation>Ouvrir une configuration</translation>
    </message>
    <message id="open_list">
        <source></source>
        <translation>Dossiers et fichiers</translation>
    </message>
    <message id="open_nothing">
        <source></source>
        <translation>Aucun fichier ne commence ainsi.</translation>
    </message>
    <message id="open_open">
        <source></source>
        <translation>Ouvrir</translation>
    </message>
    <message id="open_no_file">
        <source></source>
        <translation>%1 : un fichier était attendu</translation>
    </message>
    <message id="mistakes_hint">
        <source></source>
        <translation>Le banc continue tel quel. Un clic ou Entrée copie une erreur.</translation>
    </message>
    <message id="mistakes_copied">
        <source></source>
        <translation>copié</translation>
    </message>
    <message id="mistakes_retry">
        <source></source>
        <translation>Réessayer</translation>
    </message>
    <message id="mistakes_retry_hint">
        <source></source>
        <translation>Lire le fichier une nouvelle fois</translation>
    </message>
    <message id="mistakes_copy_all">
        <source></source>
        <translation>Tout copier</translation>
    </message>
    <message id="replace_title">
        <source></source>
        <translation>Ouvrir l’autre configuration ?</translation>
    </message>
    <message id="replace_stop">
        <source></source>
        <translation>Tout arrêter et ouvrir</translation>
    </message>
    <message id="replace_anyway">
        <source></source>
        <translation>Ouvrir</translation>
    </message>
    <message id="help_open">
        <source></source>
        <translation>ouvrir une configuration, recharger celle-ci</translation>
    </message>
    <message id="mistakes_title" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Non ouverte : une erreur</numerusform>
            <numerusform>Non ouverte : %n erreurs</numerusform>
        </translation>
    </message>
    <message id="file_script">
        <source></source>
        <translation>Exécuter un script…</translation>
    </message>
    <message id="script_title">
        <source></source>
        <translation>Exécuter un script</translation>
    </message>
    <message id="script_run">
        <source></source>
        <translation>Exécuter</translation>
    </message>
    <message id="script_stop">
        <source></source>
        <translation>Arrêter</translation>
    </message>
    <message id="script_stopped">
        <source></source>
        <translation>arrêté à la ligne %1</translation>
    </message>
    <message id="script_done">
        <source></source>
        <translation>terminé</translation>
    </message>
    <message id="close_script">
        <source></source>
        <translation>Un script est en cours et serait arrêté.</translation>
    </message>
    <message id="help_script">
        <source></source>
        <translation>exécuter les ordres d’un fichier</translation>
    </message>
    <message id="export_too_high">
        <source></source>
        <translation>Une image ne peut contenir autant de lignes ; en masquer, ou les enregistrer en .svg.</translation>
    </message>
    <message id="the device is not connected">
        <source></source>
        <translation>l’appareil n’est pas connecté</translation>
    </message>
    <message id="the device is closed">
        <source></source>
        <translation>l’appareil est fermé</translation>
    </message>
    <message id="the device was closed">
        <source></source>
        <translation>l’appareil a été fermé</translation>
    </message>
    <message id="the device is gone">
        <source></source>
        <translation>l’appareil n’est plus là</translation>
    </message>
    <message id="the tool has no device">
        <source></source>
        <translation>l’outil n’a pas d’appareil</translation>
    </message>
    <message id="the tool was closed">
        <source></source>
        <translation>l’outil a été fermé</translation>
    </message>
    <message id="the command refused to run">
        <source></source>
        <translation>la commande a refusé de démarrer</translation>
    </message>
    <message id="the command failed">
        <source></source>
        <translation>la commande a échoué</translation>
    </message>
    <message id="the command sent no device request">
        <source></source>
        <translation>la commande n’a rien demandé à l’appareil</translation>
    </message>
    <message id="the command waits for nothing more, without having reported %1">
        <source></source>
        <translation>la commande n’attend plus rien, sans avoir rendu %1</translation>
    </message>
    <message id="reply rejected">
        <source></source>
        <translation>la réponse ne convient pas</translation>
    </message>
    <message id="stopped before it was complete">
        <source></source>
        <translation>arrêté avant la fin</translation>
    </message>
    <message id="no running order to stop">
        <source></source>
        <translation>aucun ordre en cours à arrêter</translation>
    </message>
    <message id="no running order with these arguments to stop">
        <source></source>
        <translation>aucun ordre en cours avec ces arguments à arrêter</translation>
    </message>
    <message id="no reply to %1 within %2 ms">
        <source></source>
        <translation>pas de réponse à %1 en %2 ms</translation>
    </message>
    <message id="too many treatments wait">
        <source></source>
        <translation>trop de demandes sont en attente</translation>
    </message>
    <message id='unknown command "%1"; the tool has: %2'>
        <source></source>
        <translation>commande « %1 » inconnue ; l’outil a : %2</translation>
    </message>
    <message id='unknown parameter "%1" of command "%2"; it takes: %3'>
        <source></source>
        <translation>paramètre « %1 » de la commande « %2 » inconnu ; elle accepte : %3</translation>
    </message>
    <message id='parameter "%1" of command "%2" cannot hold "%3"; expected %4'>
        <source></source>
        <translation>le paramètre « %1 » de la commande « %2 » ne peut contenir « %3 » ; attendu : %4</translation>
    </message>
    <message id="a text">
        <source></source>
        <translation>un texte</translation>
    </message>
    <message id="a whole number from %1 to %2">
        <source></source>
        <translation>un nombre entier de %1 à %2</translation>
    </message>
    <message id="true or false">
        <source></source>
        <translation>true ou false</translation>
    </message>
    <message id="any value">
        <source></source>
        <translation>une valeur</translation>
    </message>
    <message id='unknown channel "%1"'>
        <source></source>
        <translation>voie « %1 » inconnue</translation>
    </message>
    <message id='channel "%1" is an input and cannot be written'>
        <source></source>
        <translation>la voie « %1 » est une entrée et ne peut être écrite</translation>
    </message>
    <message id='"listenToAll" tells %1 binary lines at most, the device has %2'>
        <source></source>
        <translation>« listenToAll » suit au plus %1 lignes binaires, l’appareil en a %2</translation>
    </message>
    <message id='line "%1" blinks no more: %2'>
        <source></source>
        <translation>la ligne « %1 » ne clignote plus : %2</translation>
    </message>
    <message id="the simulated board is unplugged">
        <source></source>
        <translation>la carte simulée est débranchée</translation>
    </message>
    <message id='the board refuses "%1" of channel "%2"'>
        <source></source>
        <translation>la carte refuse « %1 » pour la voie « %2 »</translation>
    </message>
    <message id='the board refuses "%1"'>
        <source></source>
        <translation>la carte refuse « %1 »</translation>
    </message>
    <message id="the chip %1 is gone; plug it in or load its driver, and the bench goes on">
        <source></source>
        <translation>la puce %1 n’est plus là ; branchez-la ou chargez son pilote, et le banc continue</translation>
    </message>
    <message id='the chip %1 cannot be opened: %2; "appvantor discover" lists those of this machine'>
        <source></source>
        <translation>la puce %1 ne peut être ouverte : %2 ; « appvantor discover » liste celles de cette machine</translation>
    </message>
    <message id="the chip %1: permission denied; %2">
        <source></source>
        <translation>la puce %1 : permission refusée ; %2</translation>
    </message>
    <message id='join its group with "sudo usermod -aG %1 $USER", and log in again'>
        <source></source>
        <translation>rejoignez son groupe avec « sudo usermod -aG %1 $USER », puis reconnectez-vous</translation>
    </message>
    <message id="%1 is busy: another program or driver holds it; end that, and the bench goes on">
        <source></source>
        <translation>%1 est occupée : un autre programme ou pilote la tient ; terminez-le, et le banc continue</translation>
    </message>
    <message id="%1 is busy: %2 holds it; end that, and the bench goes on">
        <source></source>
        <translation>%1 est occupée : %2 la tient ; terminez-le, et le banc continue</translation>
    </message>
    <message id="%1 does not answer: %2; the kernel's log (&quot;sudo dmesg&quot;) may tell why">
        <source></source>
        <translation>%1 ne répond pas : %2 ; le journal du noyau (« sudo dmesg ») dit peut-être pourquoi</translation>
    </message>
    <message id="%1: %2 edges came faster than they could be read, and are lost">
        <source></source>
        <translation>%1 : %2 fronts sont venus trop vite pour être lus et sont perdus</translation>
    </message>
    <message id="%1: %2 edges of lines that are still now came faster than they could be read, and are lost">
        <source></source>
        <translation>%1 : %2 fronts de lignes maintenant immobiles sont venus trop vite pour être lus et sont perdus</translation>
    </message>
    <message id='there is no rig "%1" on %2'>
        <source></source>
        <translation>il n’y a pas de banc « %1 » sur %2</translation>
    </message>
    <message id='the rig "%1" is offline'>
        <source></source>
        <translation>le banc « %1 » est hors ligne</translation>
    </message>
    <message id='the rig "%1" is lost'>
        <source></source>
        <translation>le banc « %1 » est perdu</translation>
    </message>
    <message id='the rig "%1" does not answer'>
        <source></source>
        <translation>le banc « %1 » ne répond pas</translation>
    </message>
    <message id='the rig "%1" does not say why'>
        <source></source>
        <translation>le banc « %1 » ne dit pas pourquoi</translation>
    </message>
    <message id='line "%1": the rig "%2" has no line "%3"'>
        <source></source>
        <translation>ligne « %1 » : le banc « %2 » n’a pas de ligne « %3 »</translation>
    </message>
    <message id="too much waits for the broker already">
        <source></source>
        <translation>trop de messages attendent déjà le serveur MQTT</translation>
    </message>
    <message id="%1: it does not answer">
        <source></source>
        <translation>%1 : pas de réponse</translation>
    </message>
    <message id="%1: it refuses: %2">
        <source></source>
        <translation>%1 : refus : %2</translation>
    </message>
    <message id="%1: its certificate is refused: %2">
        <source></source>
        <translation>%1 : son certificat est refusé : %2</translation>
    </message>
    <message id="%1: it ended the connection: %2">
        <source></source>
        <translation>%1 : il a mis fin à la connexion : %2</translation>
    </message>
    <message id="decimal_sign">
        <source></source>
        <translation>,</translation>
    </message>
</context>
</TS>
